target_sources(vorlix_core PRIVATE
  timecode/NumberText.h timecode/NumberText.cpp
  timecode/Timecode.h timecode/Timecode.cpp
  timecode/ClipMatcher.h timecode/ClipMatcher.cpp)

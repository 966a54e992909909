target_sources(vorlix_core PRIVATE
  time/NumberText.h time/NumberText.cpp
  time/Timecode.h time/Timecode.cpp)

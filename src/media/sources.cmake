target_sources(vorlix_core PRIVATE
  media/AudioTrackSelector.h media/AudioTrackSelector.cpp
  media/FFprobeOutput.h media/FFprobeOutput.cpp
  media/FootageScanner.h media/FootageScanner.cpp
  media/MediaScanner.h media/MediaScanner.cpp
  media/ProbeCache.h media/ProbeCache.cpp
  media/ToolLocations.h media/ToolLocations.cpp
  media/ToolRunner.h media/ToolRunner.cpp)

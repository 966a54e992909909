target_sources(vorlix_core PRIVATE
  media/AudioTrackSelector.h media/AudioTrackSelector.cpp)

target_sources(vorlix_core PRIVATE
  model/ShootMarker.h model/ShootMarker.cpp
  model/ShootSession.h model/ShootSession.cpp
  model/TranscriptSegment.h
  model/MediaClip.h model/MediaClip.cpp
  model/DeletedSessionInfo.h
  model/Rgb.h
  model/RecordJson.h model/RecordJson.cpp
  model/ClipMatcher.h model/ClipMatcher.cpp)

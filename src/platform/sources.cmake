target_sources(vorlix_core PRIVATE
  platform/Preferences.h platform/Preferences.cpp)
target_sources(vorlix_core PRIVATE
  platform/AtomicFile.h platform/AtomicFile.cpp)
target_sources(vorlix_core PRIVATE
  platform/Desktop.h)
target_sources(vorlix_core PRIVATE
  platform/Workspace.h
  platform/ProcessWorkspace.h platform/ProcessWorkspace.cpp)

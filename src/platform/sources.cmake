target_sources(vorlix_core PRIVATE
  platform/Preferences.h platform/Preferences.cpp
  platform/AtomicFile.h platform/AtomicFile.cpp
  platform/Desktop.h
  platform/IdleDesktop.h
  platform/Workspace.h
  platform/ProcessWorkspace.h platform/ProcessWorkspace.cpp
  platform/CredentialStore.h platform/CredentialStore.cpp)

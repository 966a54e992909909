target_sources(vorlix_core PRIVATE
  platform/Preferences.h platform/Preferences.cpp)
target_sources(vorlix_core PRIVATE
  platform/AtomicFile.h platform/AtomicFile.cpp)
target_sources(vorlix_core PRIVATE
  platform/CredentialStore.h platform/CredentialStore.cpp
  platform/NotificationCenter.h platform/NotificationCenter.cpp)

target_sources(vorlix_core PRIVATE
  state/PreferenceKeys.h
  state/AppState.h state/AppState.cpp
  state/SessionLibrary.h state/SessionLibrary.cpp)

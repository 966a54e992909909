target_sources(vorlix_ui PRIVATE
  ui/detail/AnalysisState.cpp
  ui/detail/AnalysisState.h
  ui/detail/MarkerRow.cpp
  ui/detail/MarkerRow.h
  ui/detail/SessionDetailView.cpp
  ui/detail/SessionDetailView.h)

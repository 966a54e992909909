target_sources(vorlix_core PRIVATE
  analysis/AnalysisService.h analysis/AnalysisService.cpp)

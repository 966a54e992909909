target_sources(vorlix_core PRIVATE
  analysis/AnalysisPipeline.h analysis/AnalysisPipeline.cpp
  analysis/AnalysisService.h analysis/AnalysisService.cpp)

target_sources(vorlix_core PRIVATE
  analysis/AnalysisPipeline.h analysis/AnalysisPipeline.cpp
  analysis/PendingAnalyses.h analysis/PendingAnalyses.cpp)

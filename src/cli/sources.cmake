add_executable(vorlix-sync-cli
  cli/main.cpp
  cli/CliCommand.h cli/CliCommand.cpp
  cli/CliIo.h cli/CliIo.cpp
  cli/MatchCommands.cpp)
target_link_libraries(vorlix-sync-cli PRIVATE vorlix_core vorlix_warnings)
target_sources(vorlix-sync-cli PRIVATE cli/ExportCommands.cpp)
target_sources(vorlix-sync-cli PRIVATE cli/MediaCommands.cpp)
target_sources(vorlix-sync-cli PRIVATE cli/ServiceCommands.cpp)
target_sources(vorlix-sync-cli PRIVATE cli/AnalysisCommands.cpp)

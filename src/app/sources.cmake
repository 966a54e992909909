add_executable(vorlix-sync app/main.cpp)
target_link_libraries(vorlix-sync PRIVATE vorlix_ui vorlix_warnings)

# vorlix_warnings: the warning level our own targets are held to. Qt, QCoro and QtKeychain come
# in through imported targets, so their headers are system headers and stay quiet.
add_library(vorlix_warnings INTERFACE)
target_compile_options(vorlix_warnings INTERFACE
  "$<$<CXX_COMPILER_ID:GNU,Clang,AppleClang>:-Wall;-Wextra;-Wpedantic>"
  # MSVC: /external keeps Qt's headers (included with angle brackets) out of /W4; the sources
  # are UTF-8, which MSVC would otherwise read in the local code page and warn about.
  "$<$<CXX_COMPILER_ID:MSVC>:/W4;/permissive-;/external:anglebrackets;/external:W0;/utf-8>")

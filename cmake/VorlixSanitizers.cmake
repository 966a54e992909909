# VORLIX_SANITIZE: AddressSanitizer and UndefinedBehaviorSanitizer on every target, tests and
# stand-in included. Undefined behaviour aborts at the first report instead of printing and
# carrying on, so a test that hits it fails.
if(NOT VORLIX_SANITIZE)
  return()
endif()
if(NOT CMAKE_CXX_COMPILER_ID MATCHES "^(GNU|Clang|AppleClang)$")
  message(FATAL_ERROR "VORLIX_SANITIZE needs GCC or Clang, not ${CMAKE_CXX_COMPILER_ID}")
endif()
add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=undefined
  -fno-omit-frame-pointer)
add_link_options(-fsanitize=address,undefined)

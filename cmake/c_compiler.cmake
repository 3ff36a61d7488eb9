# The compiler of C that goes with that of C++, for examples and tests of the C interface.
if(NOT CMAKE_C_COMPILER AND CMAKE_CXX_COMPILER_ID MATCHES "GNU|Clang")
  string(REGEX REPLACE "clang\\+\\+([^/]*)$" "clang\\1" c_compiler ${CMAKE_CXX_COMPILER})
  string(REGEX REPLACE "g\\+\\+([^/]*)$" "gcc\\1" c_compiler ${c_compiler})
  if(EXISTS ${c_compiler} AND NOT c_compiler STREQUAL CMAKE_CXX_COMPILER)
    set(CMAKE_C_COMPILER ${c_compiler})
  endif()
endif()
enable_language(C)

# What programs in C must be compiled with that show how the interface is used.
function(compile_as_strict_c target)
  set_target_properties(${target} PROPERTIES C_STANDARD 99 C_STANDARD_REQUIRED ON C_EXTENSIONS OFF)
  target_compile_options(${target} PRIVATE -pedantic -Wall -Wextra -Werror)
  if(PGMDEV_SANITIZE)  # whose libraries for C++ come from the program
    set_target_properties(${target} PROPERTIES LINKER_LANGUAGE CXX)
  endif()
endfunction()

# Clang compiles tests in half the time that GCC takes. It can do so in a build by GCC, which still compiles what is shipped
# and links everything: their objects go together.

option(PGMDEV_TESTS_BY_CLANG "Let Clang compile the tests of a build by GCC, if it is there" OFF)

# compile_tests_by_clang(): what the calling directory and those below it add from now on.
macro(compile_tests_by_clang)
  find_program(PGMDEV_CLANG clang++ DOC "Clang, for the tests of a build by GCC")
  if(PGMDEV_TESTS_BY_CLANG AND PGMDEV_CLANG AND CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    set(CMAKE_CXX_COMPILER_LAUNCHER ${PROJECT_SOURCE_DIR}/cmake/compile_with_clang.sh ${PGMDEV_CLANG})
    if(MINGW)
      list(APPEND CMAKE_CXX_COMPILER_LAUNCHER --target=x86_64-w64-mingw32 -femulated-tls -nostdinc++)
      foreach(directory IN LISTS CMAKE_CXX_IMPLICIT_INCLUDE_DIRECTORIES)
        if(directory MATCHES "/c\\+\\+")  # this GCC's own library, which Clang does not look for where Debian has it
          list(APPEND CMAKE_CXX_COMPILER_LAUNCHER -isystem ${directory})
        endif()
      endforeach()
    endif()
    list(APPEND CMAKE_CXX_COMPILER_LAUNCHER --)
  endif()
endmacro()

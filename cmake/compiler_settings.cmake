# Warnings, sanitizers and position independence for everything that this project compiles itself.

add_library(pgmdev_compiler_settings INTERFACE)

target_compile_options(pgmdev_compiler_settings INTERFACE
  -Wall -Wextra -Wpedantic -Wconversion -Wsign-conversion -Wshadow -Wold-style-cast -Wcast-qual -Wformat=2
  -Wnon-virtual-dtor -Woverloaded-virtual -Wundef
  # Reproducible builds: no path of the build machine in what is built. The last one that fits wins.
  -ffile-prefix-map=${PROJECT_SOURCE_DIR}=.
  -ffile-prefix-map=${PROJECT_BINARY_DIR}=build)

# GCC 12 warns of overlaps in its own std::string when it inlines operator+ (GCC bug 105651).
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
  target_compile_options(pgmdev_compiler_settings INTERFACE -Wno-restrict)
endif()

# By default, what must be unique in a process keeps the libraries that have it loaded to the end of the process.
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND NOT WIN32)
  target_compile_options(pgmdev_compiler_settings INTERFACE -fno-gnu-unique)
endif()

if(PGMDEV_WARNINGS_AS_ERRORS)
  target_compile_options(pgmdev_compiler_settings INTERFACE -Werror)
endif()

if(PGMDEV_BUILD_FUZZERS)
  add_compile_options(-fsanitize=fuzzer-no-link,address,undefined -fno-sanitize-recover=all)
  add_link_options(-fsanitize=address,undefined)
elseif(PGMDEV_SANITIZE)
  add_compile_options(-fsanitize=${PGMDEV_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  add_link_options(-fsanitize=${PGMDEV_SANITIZE})
elseif(NOT WIN32)
  add_link_options(-Wl,--no-undefined)
endif()

if(MINGW)
  # Reproducible builds: no time of day in what is linked.
  add_link_options(-Wl,--no-insert-timestamp)
endif()

# The libraries that are headers only: CLI11, fmt, RapidJSON, and nlohmann_json, by which tests and benchmarks read JSON.
#
# They serve every compiler, but their packages put them among the headers of the build machine, where a cross compiler
# must not look. For it, the build tree gets a directory with nothing but links to them.

if(NOT CMAKE_CROSSCOMPILING)
  find_package(CLI11 REQUIRED)
  find_package(fmt REQUIRED)
  find_package(RapidJSON REQUIRED)
  add_library(RapidJSON INTERFACE IMPORTED)
  target_include_directories(RapidJSON INTERFACE ${RAPIDJSON_INCLUDE_DIRS})
  if(PGMDEV_BUILD_TESTS OR PGMDEV_BUILD_BENCHMARKS)
    find_package(nlohmann_json REQUIRED)
  endif()
  return()
endif()

set(staged ${PROJECT_BINARY_DIR}/header_libraries)
file(MAKE_DIRECTORY ${staged})
set(libraries CLI fmt rapidjson)
set(targets CLI11::CLI11 fmt::fmt-header-only RapidJSON)
if(PGMDEV_BUILD_TESTS)
  list(APPEND libraries nlohmann)
  list(APPEND targets nlohmann_json::nlohmann_json)
endif()
foreach(library IN LISTS libraries)
  find_path(PGMDEV_${library}_PARENT ${library} PATHS /usr/include REQUIRED NO_DEFAULT_PATH NO_CMAKE_FIND_ROOT_PATH
    DOC "Directory that holds the headers ${library}/")
  file(CREATE_LINK ${PGMDEV_${library}_PARENT}/${library} ${staged}/${library} COPY_ON_ERROR SYMBOLIC)
endforeach()
foreach(target IN LISTS targets)
  add_library(${target} INTERFACE IMPORTED)
  target_include_directories(${target} INTERFACE ${staged})
endforeach()
target_compile_definitions(fmt::fmt-header-only INTERFACE FMT_HEADER_ONLY=1)

# The libraries that are headers only: CLI11, nlohmann_json, fmt.
#
# They serve every compiler, but their packages put them among the headers of the build machine, where a cross compiler
# must not look. For it, the build tree gets a directory with nothing but links to them.

if(NOT CMAKE_CROSSCOMPILING)
  find_package(CLI11 REQUIRED)
  find_package(nlohmann_json REQUIRED)
  find_package(fmt REQUIRED)
  return()
endif()

set(staged ${PROJECT_BINARY_DIR}/header_libraries)
file(MAKE_DIRECTORY ${staged})
foreach(library CLI nlohmann fmt)
  find_path(PGMDEV_${library}_PARENT ${library} PATHS /usr/include REQUIRED NO_DEFAULT_PATH NO_CMAKE_FIND_ROOT_PATH
    DOC "Directory that holds the headers ${library}/")
  file(CREATE_LINK ${PGMDEV_${library}_PARENT}/${library} ${staged}/${library} COPY_ON_ERROR SYMBOLIC)
endforeach()
foreach(target CLI11::CLI11 nlohmann_json::nlohmann_json fmt::fmt-header-only)
  add_library(${target} INTERFACE IMPORTED)
  target_include_directories(${target} INTERFACE ${staged})
endforeach()
target_compile_definitions(fmt::fmt-header-only INTERFACE FMT_HEADER_ONLY=1)

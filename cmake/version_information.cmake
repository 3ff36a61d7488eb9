# What Windows shows as the details of a file, and by which installers tell an older file from a newer one.
if(WIN32)
  enable_language(RC)
endif()

# add_version_information(TARGET FILE_NAME DESCRIPTION): TARGET, of which FILE_NAME is made, tells its version; on Windows.
function(add_version_information target file_name description)
  if(NOT WIN32)
    return()
  endif()
  set(file_type 2)  # a DLL
  get_target_property(type ${target} TYPE)
  if(type STREQUAL "EXECUTABLE")
    set(file_type 1)
  endif()
  set(source ${CMAKE_CURRENT_BINARY_DIR}/${target}_version.rc)
  configure_file(${PROJECT_SOURCE_DIR}/cmake/version_information.rc.in ${source} @ONLY)
  # Compiled by itself, since the options of the target are a C++ compiler's.
  add_library(${target}_version OBJECT ${source})
  target_sources(${target} PRIVATE $<TARGET_OBJECTS:${target}_version>)
endfunction()

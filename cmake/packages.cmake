# Packages, made by cpack: on Linux those for Debian and an archive, for Windows an archive with all it needs.

set(CPACK_PACKAGE_NAME pgmdev)
set(CPACK_PACKAGE_VENDOR "The makers of Tessary")
set(CPACK_PACKAGE_CONTACT "The makers of Tessary <pgmdev@tessary.invalid>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "device-data layer of Tessary")
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_COMPONENTS_ALL runtime development)
if(PGMDEV_WITH_PYTHON)
  list(APPEND CPACK_COMPONENTS_ALL python)
endif()
if(PGMDEV_HAS_SITE)
  list(APPEND CPACK_COMPONENTS_ALL documentation)
endif()
set(CPACK_VERBATIM_VARIABLES ON)
set(CPACK_STRIP_FILES ON)
set(CPACK_THREADS 1)

# Run by cpack itself, before and after it packs: the same commit gives the same bytes.
set(CPACK_PROJECT_CONFIG_FILE ${PROJECT_SOURCE_DIR}/cmake/package_time.cmake)
set(CPACK_PRE_BUILD_SCRIPTS
  ${PROJECT_SOURCE_DIR}/cmake/debian_package.cmake
  ${PROJECT_SOURCE_DIR}/cmake/package_directories.cmake)
set(CPACK_POST_BUILD_SCRIPTS ${PROJECT_SOURCE_DIR}/cmake/reproducible_archive.cmake)
set(CPACK_PGMDEV_SOURCE_DIR ${PROJECT_SOURCE_DIR})
set(CPACK_PGMDEV_THIRD_PARTY ${PGMDEV_THIRD_PARTY})
set(CPACK_PGMDEV_CONTROL_DIR ${PROJECT_BINARY_DIR}/package/debian)  # what debian_package.cmake writes for `pgmdev`

if(WIN32)
  set(CPACK_GENERATOR ZIP)
  set(CPACK_SYSTEM_NAME windows-x86_64)
else()
  set(CPACK_GENERATOR DEB TGZ)
  set(CPACK_SYSTEM_NAME linux-${CMAKE_SYSTEM_PROCESSOR})
endif()

set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_COMPRESSION_TYPE gzip)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)

set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME pgmdev)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION electronics)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${CMAKE_LIBRARY_OUTPUT_DIRECTORY})
set(CPACK_DEBIAN_RUNTIME_PACKAGE_CONTROL_EXTRA
  ${CPACK_PGMDEV_CONTROL_DIR}/shlibs
  ${CPACK_PGMDEV_CONTROL_DIR}/symbols
  ${CPACK_PGMDEV_CONTROL_DIR}/triggers)
set(CPACK_DEBIAN_RUNTIME_DESCRIPTION
  "What an FPGA programming tool has to know about devices and the serial flash\nbeside them: libraries, databases and the command pgmdev.")

set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME pgmdev-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "pgmdev (= ${PROJECT_VERSION})")
set(CPACK_DEBIAN_DEVELOPMENT_DESCRIPTION
  "Headers, CMake package, pkg-config file and documents, for building programs\nthat use the device data.")

if(PGMDEV_WITH_PYTHON)
  math(EXPR next_minor "${Python3_VERSION_MINOR} + 1")
  set(CPACK_DEBIAN_PYTHON_PACKAGE_NAME python3-pgmdev)
  set(CPACK_DEBIAN_PYTHON_PACKAGE_SECTION python)
  set(CPACK_DEBIAN_PYTHON_PACKAGE_SHLIBDEPS ON)
  set(CPACK_DEBIAN_PYTHON_PACKAGE_DEPENDS
    "pgmdev (= ${PROJECT_VERSION}), python3 (>= 3.${Python3_VERSION_MINOR}~), python3 (<< 3.${next_minor})")
  set(CPACK_DEBIAN_PYTHON_PACKAGE_SUGGESTS python3-pandas)
  set(CPACK_DEBIAN_PYTHON_DESCRIPTION
    "Python package of the device data: serial flash, device names, parts and\nprogramming profiles, for programs and notebooks.")
endif()
set(CPACK_DEBIAN_DOCUMENTATION_PACKAGE_NAME pgmdev-doc)
set(CPACK_DEBIAN_DOCUMENTATION_PACKAGE_SECTION doc)
set(CPACK_DEBIAN_DOCUMENTATION_PACKAGE_ARCHITECTURE all)
set(CPACK_DEBIAN_DOCUMENTATION_DESCRIPTION
  "All guides and the reference of the headers, as pages for browsers that need no\nserver and no network.")

include(CPack)

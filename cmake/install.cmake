# What is installed, in two components: "runtime" is what programs need to run, "development" what building them needs.

include(CMakePackageConfigHelpers)

set(libraries pgmdev)
set(header_dirs ${PROJECT_SOURCE_DIR}/h/)
if(TARGET pgmhost)
  list(APPEND libraries pgmhost)
  list(APPEND header_dirs ${PROJECT_SOURCE_DIR}/host/h/)
endif()
set(c_libraries)
if(TARGET pgmdev_c)
  list(APPEND c_libraries pgmdev_c)
  list(APPEND header_dirs ${PROJECT_SOURCE_DIR}/c/include/)
endif()

install(TARGETS ${libraries} ${c_libraries}
  EXPORT pgmdev_targets
  RUNTIME COMPONENT runtime
  LIBRARY COMPONENT runtime NAMELINK_COMPONENT development
  ARCHIVE COMPONENT development)
install(DIRECTORY ${header_dirs}
  DESTINATION ${PGMDEV_INSTALL_INCLUDEDIR}
  COMPONENT development
  FILES_MATCHING PATTERN "*.h")

if(PGMDEV_BUILD_COMMAND)
  install(TARGETS pgmdev_command RUNTIME COMPONENT runtime)
  install(DIRECTORY ${PGMDEV_DEVICES_DIR}/programmer
    DESTINATION ${PGMDEV_INSTALL_DATADIR}/devices
    COMPONENT runtime
    FILES_MATCHING PATTERN "*.pcf" PATTERN "*.pcf.*" PATTERN "pgm_flash.*.csv")
  install(DIRECTORY ${PGMDEV_SCHEMA_DIR} DESTINATION ${PGMDEV_INSTALL_DATADIR} COMPONENT runtime)
endif()

# Manual pages, and what lets shells complete command lines.
if(PGMDEV_BUILD_COMMAND AND NOT WIN32)
  set(scripts ${PROJECT_SOURCE_DIR}/tools/pgmdev/shell/scripts)
  install(DIRECTORY ${PROJECT_BINARY_DIR}/share/man/man1 DESTINATION ${CMAKE_INSTALL_MANDIR} COMPONENT runtime)
  install(FILES ${scripts}/pgmdev.bash
    DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/bash-completion/completions
    RENAME pgmdev
    COMPONENT runtime)
  install(FILES ${scripts}/_pgmdev DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/zsh/site-functions COMPONENT runtime)
  install(FILES ${scripts}/pgmdev.fish
    DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/fish/vendor_completions.d
    COMPONENT runtime)
endif()
if(PGMDEV_BUILD_COMMAND)
  include(cmake/guides.cmake)
endif()
install(FILES ${PGMDEV_INSTALLATION_DIR}/h/pgm_parts.txt
  DESTINATION ${PGMDEV_INSTALL_DATADIR}/h
  COMPONENT runtime)
install(FILES README.md CHANGELOG.md CONTRIBUTING.md SECURITY.md
  DESTINATION ${PGMDEV_INSTALL_DOCDIR} COMPONENT development)
install(DIRECTORY docs DESTINATION ${PGMDEV_INSTALL_DOCDIR} COMPONENT development)

# The CMake package.
install(EXPORT pgmdev_targets
  NAMESPACE pgmdev::
  FILE pgmdev-targets.cmake
  DESTINATION ${PGMDEV_INSTALL_CMAKEDIR}
  COMPONENT development)
configure_package_config_file(cmake/pgmdev-config.cmake.in ${PROJECT_BINARY_DIR}/package/pgmdev-config.cmake
  INSTALL_DESTINATION ${PGMDEV_INSTALL_CMAKEDIR}
  PATH_VARS CMAKE_INSTALL_LIBDIR
  NO_SET_AND_CHECK_MACRO)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/package/pgmdev-config-version.cmake
  COMPATIBILITY SameMajorVersion)
install(FILES
  ${PROJECT_BINARY_DIR}/package/pgmdev-config.cmake
  ${PROJECT_BINARY_DIR}/package/pgmdev-config-version.cmake
  DESTINATION ${PGMDEV_INSTALL_CMAKEDIR}
  COMPONENT development)

# The pkg-config files.
set(pc_libraries ${libraries})
list(TRANSFORM pc_libraries PREPEND -l)
list(JOIN pc_libraries " " pc_libraries)
file(RELATIVE_PATH pc_to_prefix
  ${CMAKE_INSTALL_PREFIX}/${PGMDEV_INSTALL_PKGCONFIGDIR} ${CMAKE_INSTALL_PREFIX})
string(REGEX REPLACE "/$" "" pc_to_prefix "${pc_to_prefix}")
configure_file(cmake/pgmdev.pc.in ${PROJECT_BINARY_DIR}/package/pgmdev.pc @ONLY)
set(pc_files ${PROJECT_BINARY_DIR}/package/pgmdev.pc)
if(TARGET pgmdev_c)
  configure_file(cmake/pgmdev_c.pc.in ${PROJECT_BINARY_DIR}/package/pgmdev_c.pc @ONLY)
  list(APPEND pc_files ${PROJECT_BINARY_DIR}/package/pgmdev_c.pc)
endif()
install(FILES ${pc_files}
  DESTINATION ${PGMDEV_INSTALL_PKGCONFIGDIR}
  COMPONENT development)

# What of others is in it, and its licences, as the packages that it comes from tell them. On Windows also the libraries of
# the compiler and of others, so that a bare machine has all it needs.
include(cmake/third_party.cmake)
if(WIN32)
  install(FILES ${PGMDEV_RUNTIME_DLLS} DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT runtime)
endif()
foreach(component IN LISTS PGMDEV_THIRD_PARTY)
  string(REPLACE "|" ";" fields "${component}")
  list(GET fields 1 package)
  list(APPEND licensed_packages ${package})
endforeach()
list(REMOVE_DUPLICATES licensed_packages)
foreach(package IN LISTS licensed_packages)
  install(FILES /usr/share/doc/${package}/copyright
    DESTINATION ${PGMDEV_INSTALL_DOCDIR}/licences
    RENAME ${package}.txt
    COMPONENT runtime
    OPTIONAL)
endforeach()
install(CODE "
  set(VERSION ${PROJECT_VERSION})
  set(OUTPUT ${PGMDEV_INSTALL_DOCDIR}/pgmdev.spdx.json)
  set(THIRD_PARTY \"${PGMDEV_THIRD_PARTY}\")" COMPONENT runtime)
install(SCRIPT cmake/bill_of_materials.cmake COMPONENT runtime)

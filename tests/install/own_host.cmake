# Another program builds the device data with a host of its own, and installs what it built.
include(${CMAKE_CURRENT_LIST_DIR}/common.cmake)

set(WORK_DIR ${WORK_DIR}-own-host)
set(binary ${WORK_DIR}/build)
file(MAKE_DIRECTORY ${WORK_DIR})
if(COMPILER_LAUNCHER)  # the library's sources once more: as fast as tests are compiled
  set(ENV{CMAKE_CXX_COMPILER_LAUNCHER} "${COMPILER_LAUNCHER}")
endif()
build_project(${SOURCE_DIR}/tests/own_host ${binary} -DPGMDEV_COMPILE_BY_ROOM=all
  -DPGMDEV_SOURCE_DIR=${SOURCE_DIR} -DPGMDEV_DDB_GENERATOR=${GENERATOR_OF_TABLES})

set(ENV{WINEPATH} "Z:${binary}/bin;Z:${binary}/pgmdev/bin")
run(said ${EMULATOR} ${binary}/bin/own_program${SUFFIX})
file(READ ${SOURCE_DIR}/tests/own_host/said.txt expected)
expect("the program said" "${said}" "${expected}")

# The package of such a build leaves the host to whoever links it.
run(ignored ${CMAKE_COMMAND} --install ${binary} --prefix ${WORK_DIR}/installed)
file(GLOB_RECURSE hosts ${WORK_DIR}/installed/*pgmhost* ${WORK_DIR}/installed/*/host_export.h)
expect("hosts installed" "${hosts}" "")

set(package_dir -Dpgmdev_DIR=${WORK_DIR}/installed/${CMAKE_PACKAGE_DIR})
configure_project(without_host "find_package(pgmdev CONFIG REQUIRED)" ${package_dir})
if(configured OR NOT errors MATCHES "define the[ \n]+target pgmdev::host")
  message(FATAL_ERROR "nobody supplied the host, and this was said:\n${errors}")
endif()
configure_project(with_host
  "add_library(pgmdev::host INTERFACE IMPORTED)\nfind_package(pgmdev CONFIG REQUIRED)" ${package_dir})
if(NOT configured)
  message(FATAL_ERROR "the host was supplied, and this was said:\n${errors}")
endif()

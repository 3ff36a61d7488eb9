# Someone else's project finds the installation by find_package, is built, and runs.
include(${CMAKE_CURRENT_LIST_DIR}/common.cmake)

set(binary "${WORK_DIR}/cmake consumer")
build_project(${SOURCE_DIR}/tests/consumer ${binary} "-Dpgmdev_DIR=${INSTALLED}/${CMAKE_PACKAGE_DIR}")

run(said ${EMULATOR} ${binary}/consumer${SUFFIX})
expect("the consumer said" "${said}" "${consumer_says}")

run(said ${EMULATOR} ${binary}/host_consumer${SUFFIX})
if(NOT said MATCHES "a moved installation[/\\]share[/\\]tessary[/\\]devices\n$")
  message(FATAL_ERROR "the host looks for databases in ${said}")
endif()

# A project that knows of no language but C.
set(binary_in_c "${WORK_DIR}/cmake consumer in C")
build_project(${SOURCE_DIR}/tests/consumer_in_c ${binary_in_c} "-Dpgmdev_DIR=${INSTALLED}/${CMAKE_PACKAGE_DIR}")
run(said ${EMULATOR} ${binary_in_c}/consumer_in_c${SUFFIX})
expect("the consumer in C said" "${said}" "${consumer_in_c_says}")

# A version that this one does not stand for is refused, for that reason.
string(REGEX MATCH "^([0-9]+)\\.([0-9]+)" own_version "${VERSION}")
math(EXPR major_before "${CMAKE_MATCH_1} - 1")
math(EXPR minor_behind "${CMAKE_MATCH_2} + 1")
math(EXPR major_behind "${CMAKE_MATCH_1} + 1")
foreach(version ${major_before}.9 ${CMAKE_MATCH_1}.${minor_behind} ${major_behind}.0)
  configure_project("version ${version}" "find_package(pgmdev ${version} CONFIG REQUIRED)"
    "-Dpgmdev_DIR=${INSTALLED}/${CMAKE_PACKAGE_DIR}")
  if(configured OR NOT errors MATCHES "compatible[ \n]+with[ \n]+requested")
    message(FATAL_ERROR "version ${version} was asked for, and this was said:\n${errors}")
  endif()
endforeach()

# There are no components: one that must be there is not, one that may be there is not missed.
configure_project("component" "find_package(pgmdev CONFIG REQUIRED COMPONENTS fish)"
  "-Dpgmdev_DIR=${INSTALLED}/${CMAKE_PACKAGE_DIR}")
if(configured OR NOT errors MATCHES "pgmdev has no component fish")
  message(FATAL_ERROR "a component was asked for, and this was said:\n${errors}")
endif()
configure_project("optional component" "find_package(pgmdev CONFIG REQUIRED OPTIONAL_COMPONENTS fish)"
  "-Dpgmdev_DIR=${INSTALLED}/${CMAKE_PACKAGE_DIR}")
if(NOT configured)
  message(FATAL_ERROR "a component that need not be there was asked for, and this was said:\n${errors}")
endif()

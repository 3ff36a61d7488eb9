# Installs, then moves the installation to a directory with a blank in its name.
include(${CMAKE_CURRENT_LIST_DIR}/common.cmake)

file(REMOVE_RECURSE ${WORK_DIR})
file(MAKE_DIRECTORY ${WORK_DIR})
run(ignored ${CMAKE_COMMAND} --install ${BUILD_DIR} --prefix ${WORK_DIR}/first)
file(RENAME ${WORK_DIR}/first ${INSTALLED})

# Whether the Python package is built: PGMDEV_WITH_PYTHON. AUTO looks for pybind11 each time, for ./test installs it after
# ./run has configured. A program with sanitizers would have to be the interpreter itself, and for Windows it would have
# to be that system's.

set(PGMDEV_PYTHON /usr/bin/python3 CACHE FILEPATH "The interpreter that the Python package is for")
set(PGMDEV_WITH_PYTHON OFF)
if(PGMDEV_BUILD_PYTHON STREQUAL "OFF" OR NOT PGMDEV_BUILD_COMMAND OR NOT TARGET pgmhost)
  return()
endif()
set(Python3_EXECUTABLE ${PGMDEV_PYTHON})
if(PGMDEV_BUILD_PYTHON STREQUAL "AUTO")
  if(WIN32 OR PGMDEV_SANITIZE OR PGMDEV_BUILD_FUZZERS OR NOT PROJECT_IS_TOP_LEVEL)
    return()
  endif()
  find_package(Python3 3.11 QUIET COMPONENTS Interpreter Development.Module)
  find_package(pybind11 QUIET CONFIG)
  if(NOT pybind11_FOUND OR NOT Python3_FOUND)
    return()
  endif()
else()
  find_package(Python3 3.11 REQUIRED COMPONENTS Interpreter Development.Module)
  find_package(pybind11 REQUIRED CONFIG)
endif()
set(PGMDEV_WITH_PYTHON ON)

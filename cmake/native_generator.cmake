# The generator of the compiled-in data runs while building. A cross build makes one for the build machine first, in a
# build tree of its own, unless PGMDEV_DDB_GENERATOR names one.

set(PGMDEV_DDB_GENERATOR "" CACHE FILEPATH
  "A ddb_generator that runs on the build machine, for cross compiling; empty: build one")

if(CMAKE_CROSSCOMPILING AND NOT PGMDEV_DDB_GENERATOR)
  include(ExternalProject)
  set(native ${PROJECT_BINARY_DIR}/native)
  set(native_generator ${native}/bin/ddb_generator)
  ExternalProject_Add(native_generator
    SOURCE_DIR ${PROJECT_SOURCE_DIR}
    BINARY_DIR ${native}
    CMAKE_ARGS -DCMAKE_BUILD_TYPE=Release -DPGMDEV_BUILD_TESTS=OFF -DPGMDEV_BUILD_COMMAND=OFF
      -DPGMDEV_WARNINGS_AS_ERRORS=${PGMDEV_WARNINGS_AS_ERRORS}
    BUILD_COMMAND ${CMAKE_COMMAND} --build ${native} --target ddb_generator
    BUILD_BYPRODUCTS ${native_generator}
    INSTALL_COMMAND "")
  file(GLOB sources CONFIGURE_DEPENDS
    ${PROJECT_SOURCE_DIR}/tools/ddb_generator/* ${PROJECT_SOURCE_DIR}/tables/* ${PROJECT_SOURCE_DIR}/h/*.h
    ${PROJECT_SOURCE_DIR}/host/h/*.h)
  ExternalProject_Add_StepDependencies(native_generator build ${sources})
endif()

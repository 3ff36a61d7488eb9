# The generator of the compiled-in data runs while building. A cross build makes one for the build machine first, unless
# PGMDEV_DDB_GENERATOR names one: in the build tree for this machine that PGMDEV_NATIVE_BUILD names, which is configured
# when it is not there, or else in a build tree of its own.

set(PGMDEV_DDB_GENERATOR "" CACHE FILEPATH
  "A ddb_generator that runs on the build machine, for cross compiling; empty: build one")
set(PGMDEV_NATIVE_BUILD "" CACHE PATH
  "Build tree for this machine, which makes the generator, and whose files those of a cross build must equal")

if(CMAKE_CROSSCOMPILING AND NOT PGMDEV_DDB_GENERATOR)
  include(ExternalProject)
  set(native ${PROJECT_BINARY_DIR}/native)
  if(PGMDEV_NATIVE_BUILD)
    set(native ${PGMDEV_NATIVE_BUILD})
  endif()
  set(native_generator ${native}/bin/ddb_generator)
  # A build tree that is there keeps its own settings.
  ExternalProject_Add(native_generator
    SOURCE_DIR ${PROJECT_SOURCE_DIR}
    BINARY_DIR ${native}
    CONFIGURE_COMMAND test -f ${native}/build.ninja || ${CMAKE_COMMAND} -S ${PROJECT_SOURCE_DIR} -B ${native} -G Ninja
      -DCMAKE_BUILD_TYPE=Release -DPGMDEV_BUILD_TESTS=OFF -DPGMDEV_WARNINGS_AS_ERRORS=${PGMDEV_WARNINGS_AS_ERRORS}
    BUILD_COMMAND ${CMAKE_COMMAND} --build ${native} --target ddb_generator
    BUILD_BYPRODUCTS ${native_generator}
    INSTALL_COMMAND "")
  file(GLOB sources CONFIGURE_DEPENDS
    ${PROJECT_SOURCE_DIR}/tools/ddb_generator/* ${PROJECT_SOURCE_DIR}/tables/* ${PROJECT_SOURCE_DIR}/h/*.h
    ${PROJECT_SOURCE_DIR}/host/h/*.h ${PROJECT_SOURCE_DIR}/system/*)
  ExternalProject_Add_StepDependencies(native_generator build ${sources})
endif()

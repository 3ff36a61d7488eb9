# What the tests of an installation share. Each script is given SETTINGS, made of settings.cmake.in.
cmake_minimum_required(VERSION 3.25)
include(${SETTINGS})

# Nothing of the machine's own configuration, nor of the build tree, is to help.
foreach(variable TESSARY_INSTALL_DIR TESSARY_DEVICE_DB_DIR TESSARY_MODULE_DIR LD_LIBRARY_PATH)
  unset(ENV{${variable}})
endforeach()
set(ENV{TESSARY_CONFIG_FILE} tests-have-no-configuration-file)
set(nowhere /proc/tests-have-no-such-directory)  # nor can it be made, not even by root
set(ENV{TESSARY_SYSTEM_ROOT} ${nowhere})
set(ENV{XDG_STATE_HOME} ${nowhere})
set(ENV{WINEPATH} Z:${INSTALLED}/bin)

# run(OUTPUT COMMAND...): runs a command that is to succeed, and gives what it wrote to standard output.
function(run output)
  execute_process(COMMAND ${ARGN}
    WORKING_DIRECTORY ${WORK_DIR} OUTPUT_VARIABLE written ERROR_VARIABLE errors RESULT_VARIABLE result)
  if(NOT result EQUAL 0)
    list(JOIN ARGN " " command)
    message(FATAL_ERROR "${command}\nended with ${result} and said:\n${written}${errors}")
  endif()
  string(REPLACE "\r\n" "\n" written "${written}")
  set(${output} "${written}" PARENT_SCOPE)
endfunction()

# expect(WHAT TEXT EXPECTED)
function(expect what text expected)
  if(NOT text STREQUAL expected)
    message(FATAL_ERROR "${what}: \"${text}\" instead of \"${expected}\"")
  endif()
endfunction()

# What tests/consumer/consumer.cpp says.
set(consumer_says "W25Q64JV\nAVOR25\nrefused by PGMDEV\n")
# What examples/identify.c says.
set(consumer_in_c_says "W25Q64JV: erased within 100 s\n")

# build_project(SOURCE BINARY OPTION...): configures and builds as this project was.
function(build_project source binary)
  set(options)
  if(TOOLCHAIN)
    set(options -DCMAKE_TOOLCHAIN_FILE=${TOOLCHAIN})
  endif()
  file(REMOVE_RECURSE ${binary})
  run(ignored ${CMAKE_COMMAND} -S ${source} -B ${binary} -G ${GENERATOR} -DCMAKE_MAKE_PROGRAM=${MAKE_PROGRAM}
    -DCMAKE_CXX_COMPILER=${COMPILER} -DCMAKE_CXX_FLAGS=${FLAGS} ${options} ${ARGN})
  run(ignored ${CMAKE_COMMAND} --build ${binary} --parallel 2)
endfunction()

# configure_project(NAME TEXT [OPTION...]): tries to configure a project without sources; TEXT is its CMakeLists.txt. Sets
# `configured`, and `errors` to what was said.
function(configure_project name text)
  set(source "${WORK_DIR}/${name}")
  file(REMOVE_RECURSE "${source}")
  file(WRITE "${source}/CMakeLists.txt"
    "cmake_minimum_required(VERSION 3.25)\nproject(without_sources LANGUAGES NONE)\n${text}\n")
  execute_process(
    COMMAND ${CMAKE_COMMAND} -S ${source} -B ${source}/build -G ${GENERATOR} -DCMAKE_MAKE_PROGRAM=${MAKE_PROGRAM} ${ARGN}
    OUTPUT_QUIET ERROR_VARIABLE errors RESULT_VARIABLE result)
  set(errors "${errors}" PARENT_SCOPE)
  set(configured FALSE PARENT_SCOPE)
  if(result EQUAL 0)
    set(configured TRUE PARENT_SCOPE)
  endif()
endfunction()

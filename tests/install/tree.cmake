# What is installed where, that the command runs there, and that nothing in it tells where it was built.
include(${CMAKE_CURRENT_LIST_DIR}/common.cmake)

foreach(file ${EXPECTED_FILES})
  if(NOT EXISTS "${INSTALLED}/${file}")
    message(FATAL_ERROR "${file} is not installed")
  endif()
endforeach()

run(said ${EMULATOR} ${INSTALLED}/bin/pgmdev${SUFFIX} --json flash identify EF4017)
string(JSON name GET "${said}" devices 0 device_name)
expect("the command found" "${name}" "W25Q64JV")
run(said ${EMULATOR} ${INSTALLED}/bin/pgmdev${SUFFIX} --json profile list)
string(JSON profiles LENGTH "${said}")
if(profiles EQUAL 0)
  message(FATAL_ERROR "the command found no profile")
endif()

# The guides speak of the installed command, of files that are installed, and of nothing else.
file(GLOB_RECURSE guides "${INSTALLED}/${DOC_DIR}/guides/*.md" "${INSTALLED}/${DOC_DIR}/data/*.md")
if(NOT guides)
  message(FATAL_ERROR "no guide is installed")
endif()
foreach(guide IN LISTS guides)
  file(READ "${guide}" text)
  if(text MATCHES "\\./run|\\./test|build/release|sources -->")
    message(FATAL_ERROR "${guide} says ${CMAKE_MATCH_0}")
  endif()
  cmake_path(GET guide PARENT_PATH directory)
  string(REGEX MATCHALL "\\([^() ]+\\.(md|csv|cpp)[)#]" links "${text}")  # no brackets: lists keep those together
  foreach(link IN LISTS links)
    string(REGEX REPLACE "^.(.*).$" "\\1" link "${link}")
    if(NOT EXISTS "${directory}/${link}")
      message(FATAL_ERROR "${guide} leads to ${link}, which is not installed")
    endif()
  endforeach()
endforeach()

foreach(noun_and_database flash:pgm_flash profile:pgm_dev_info)
  string(REPLACE ":" ";" noun_and_database ${noun_and_database})
  list(POP_FRONT noun_and_database noun database)
  run(said ${EMULATOR} ${INSTALLED}/bin/pgmdev${SUFFIX} --json ${noun} verify
    ${INSTALLED}/share/tessary/devices/programmer/${database}.pcf)
  string(JSON source GET "${said}" compiled_from source)
  expect("the origin of ${database}.pcf" "${source}" "${database}.csv")
endforeach()

# On a bare Windows machine, there is nothing besides the system's own libraries and those installed.
if(TARGET_IS_WINDOWS)
  set(CMAKE_GET_RUNTIME_DEPENDENCIES_PLATFORM windows+pe)
  set(CMAKE_GET_RUNTIME_DEPENDENCIES_TOOL objdump)
  set(CMAKE_GET_RUNTIME_DEPENDENCIES_COMMAND ${OBJDUMP})
  file(GET_RUNTIME_DEPENDENCIES
    UNRESOLVED_DEPENDENCIES_VAR missing
    RESOLVED_DEPENDENCIES_VAR ignored
    EXECUTABLES ${INSTALLED}/bin/pgmdev.exe
    PRE_EXCLUDE_REGEXES [[^(advapi32|bcrypt|kernel32|msvcrt|ntdll|shell32|user32|ws2_32)\.dll$]])
  if(missing)
    message(FATAL_ERROR "a bare machine lacks ${missing}")
  endif()
endif()

# Every byte of every file. Sanitizers keep the paths of sources; nobody ships those builds.
if(SANITIZED)
  return()
endif()
string(HEX ${SOURCE_DIR} source)
string(HEX ${BUILD_DIR} build)
file(GLOB_RECURSE files ${INSTALLED}/*)
if(NOT files)
  message(FATAL_ERROR "nothing is installed")
endif()
foreach(file IN LISTS files)
  file(READ ${file} bytes HEX)
  foreach(path ${source} ${build})
    string(FIND "${bytes}" ${path} place)
    if(NOT place EQUAL -1)
      message(FATAL_ERROR "${file} has a path of the build machine in it")
    endif()
  endforeach()
endforeach()

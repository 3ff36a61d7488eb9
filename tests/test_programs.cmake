# How test programs are made, and which of their tests are run where every start of a program takes long.

# Tests are compiled quickly rather than run quickly.
include(${PROJECT_SOURCE_DIR}/cmake/tests_by_clang.cmake)
compile_tests_by_clang()
add_compile_options(-O0 -U_FORTIFY_SOURCE)  # which needs the optimiser
# What is looked for is undefined in what is tested; in the tests it would take a third of their compilation.
if(PGMDEV_SANITIZE MATCHES "undefined")
  add_compile_options(-fno-sanitize=undefined)
endif()
# GNU's linker takes three quarters of a minute for a large program of tests for Windows, three seconds for one with
# sanitizers, LLVM's a fraction of a second. mingw-w64's compiler calls its own by an absolute path whatever -fuse-ld says.
# What is shipped is linked by GNU's.
find_program(PGMDEV_LLD ld.lld DOC "LLVM's linker, for test programs")
if(PGMDEV_LLD AND MINGW)
  add_link_options(-specs=${PROJECT_SOURCE_DIR}/cmake/lld.specs)
elseif(PGMDEV_LLD AND CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
  add_link_options(-fuse-ld=lld)
endif()

# GoogleTest as Debian packages it; for another system, its source as Debian packages it.
if(CMAKE_CROSSCOMPILING)
  set(PGMDEV_GOOGLETEST_DIR /usr/src/googletest CACHE PATH "Source of GoogleTest")
  set(INSTALL_GTEST OFF)
  add_subdirectory(${PGMDEV_GOOGLETEST_DIR} ${CMAKE_CURRENT_BINARY_DIR}/googletest EXCLUDE_FROM_ALL SYSTEM)
else()
  find_package(GTest REQUIRED)
endif()
include(GoogleTest)

# What nearly all tests include, read once.
add_library(test_headers OBJECT support/test_headers.cpp)
target_link_libraries(test_headers PRIVATE GTest::gtest GTest::gmock pgmdev_compiler_settings)
if(CMAKE_POSITION_INDEPENDENT_CODE)  # as programs are compiled
  set_target_properties(test_headers PROPERTIES POSITION_INDEPENDENT_CODE OFF)
  target_compile_options(test_headers PRIVATE -fPIE)
endif()
target_precompile_headers(test_headers PRIVATE
  <algorithm> <array> <filesystem> <fstream> <functional> <map> <memory> <optional> <random> <set> <sstream> <string>
  <thread> <utility> <vector> <gmock/gmock.h> <gtest/gtest.h>)

# Where every start of a program takes long, under an emulator and with sanitizers, ctest runs each program once, with all
# its tests, and what is repeated to see whether anything piles up is repeated less often.
set(starts_are_slow OFF)
# Through all names, verbs or rows, or with a process for each: more of the same to a sanitizer.
set(sweeps NamesFedBack.*:Examples.AllRun:SCHEMA_TEST.Every*:SCHEMA_TEST.ABatch*:table_diff.LargeTables)
string(APPEND sweeps :page.WritesOneDocument*)
string(APPEND sweeps :CNames.AllAre*:CParts.OrderingCodes*)
string(APPEND sweeps :NameCommand.AnswersForAll*:PartList.TellsOfEachPart*:command_posix.AKilledCompile*)
if(CMAKE_CROSSCOMPILING)  # where a process takes half a second, and a file a hundredth of one
  string(APPEND sweeps :standard_output.Holds*:FlashIniContainer.EverySingleByteChange*)
  string(APPEND sweeps :FlashDamage.EachOfTheTags:FlashDamage.RandomPayloads*:DevInfoDamage.EachOfTheTags)
  string(APPEND sweeps :CatalogReferences.RandomFaulty*)
else()  # where what is all in memory takes five times as long
  string(APPEND sweeps :PartNames.OfEveryPossibleName:PartNames.OfEveryProgrammerFilePart)
  string(APPEND sweeps :CatalogGrammar.NamesThatAreNearlyRight*:OrderingCodes.EveryPartHasItsFirstIndex)
  string(APPEND sweeps :FlashIniCrash.KilledInTheMiddleOfAWrite:annotate.ProfilesWithIndexTables)
endif()
set(many_rounds 1000)
if(CMAKE_CROSSCOMPILING OR PGMDEV_SANITIZE)
  set(starts_are_slow ON)
  set(many_rounds 100)
endif()

# The thread sanitizer is to see first calls, of which there is one in a process.
set(started_for_each_test)
if(PGMDEV_SANITIZE MATCHES "thread")
  list(APPEND started_for_each_test first_call_tests)
endif()

# add_test_program(NAME SOURCE...): one program with many tests, each of which ctest runs by itself.
function(add_test_program name)
  add_plain_test_program(${name} ${ARGN})
  target_link_libraries(${name} PRIVATE pgmdev)
  target_compile_definitions(${name} PRIVATE
    TEST_COMMAND="$<TARGET_FILE:pgmdev_command>"
    TEST_LIBRARY="$<TARGET_FILE:pgmdev>"
    TEST_DATA_DIR="${PROJECT_SOURCE_DIR}/data"
    TEST_DEVICES_DIR="${PGMDEV_DEVICES_DIR}"
    TEST_SFDP_DIR="${CMAKE_CURRENT_SOURCE_DIR}/data/sfdp"
    TEST_SCHEMA_DIR="${PGMDEV_SCHEMA_DIR}")
  add_dependencies(${name} databases schemas pgmdev_command)
endfunction()

# add_inside_test_program(NAME SOURCE...): the same, linked with the library's own objects instead of the library.
function(add_inside_test_program name)
  add_plain_test_program(${name} ${ARGN})
  target_link_libraries(${name} PRIVATE pgmdev_objects boot_flash_records)
endfunction()

function(add_plain_test_program name)
  add_test_executable(${name} ${ARGN})
  if(starts_are_slow AND NOT name IN_LIST started_for_each_test)
    math(EXPR parts "1 + ${ARGC} / 40")  # of the largest, so that none of them runs alone in the end
    foreach(part RANGE 1 ${parts})
      set(test ${name})
      if(parts GREATER 1)
        string(APPEND test /${part})
      endif()
      math(EXPR index "${part} - 1")
      add_test(NAME ${test} COMMAND ${name} --gtest_brief=1 --gtest_filter=-${sweeps})
      set_tests_properties(${test} PROPERTIES
        ENVIRONMENT "GTEST_TOTAL_SHARDS=${parts};GTEST_SHARD_INDEX=${index}"
        COST ${ARGC})  # the largest ones first, beside which the others run
    endforeach()
  else()
    # The list of tests is there at once, but not on a machine that is busy.
    gtest_discover_tests(${name} DISCOVERY_MODE PRE_TEST DISCOVERY_TIMEOUT 300 PROPERTIES LABELS ${name})
  endif()
endfunction()

# add_test_executable(NAME SOURCE...): the same, which ctest does not run.
function(add_test_executable name)
  add_executable(${name} support/isolation.cpp support/remove_tree_${system}.cpp ${ARGN})
  if(WIN32)
    target_sources(${name} PRIVATE support/replaced_import_windows.cpp support/strict_names_windows.cpp)
  endif()
  target_include_directories(${name} PRIVATE ${CMAKE_CURRENT_SOURCE_DIR})
  target_link_libraries(${name} PRIVATE GTest::gtest_main GTest::gmock pgmdev_system pgmdev_compiler_settings)
  target_precompile_headers(${name} REUSE_FROM test_headers)
  compile_by_room(${name} tests)
endfunction()

# start_emulator_before_tests(): the tests of this directory wait for the emulator's own start, which must be over before
# they start it at the same time.
function(start_emulator_before_tests)
  get_property(tests DIRECTORY PROPERTY TESTS)
  if(CMAKE_CROSSCOMPILING)
    set_property(TEST ${tests} APPEND PROPERTY FIXTURES_REQUIRED emulator)
  endif()
endfunction()

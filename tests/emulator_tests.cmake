# What an emulator runs the tests with, and what only tells something there.

# What the command does to a console: the emulator has one where it has a terminal, which `script` gives it.
find_program(PGMDEV_SCRIPT script DOC "Runs a program in a terminal")
if(WIN32 AND CMAKE_CROSSCOMPILING AND PGMDEV_SCRIPT)
  add_executable(console_probe tools/console_windows.cpp)
  target_link_libraries(console_probe PRIVATE pgmdev_system pgmdev_compiler_settings)
  list(JOIN CMAKE_CROSSCOMPILING_EMULATOR " " emulator)
  add_test(NAME Console.IsLeftAsItWas
    COMMAND ${PGMDEV_SCRIPT} -qefc "${emulator} $<TARGET_FILE:console_probe> $<TARGET_FILE:pgmdev_command>" /dev/null)
endif()

start_emulator_before_tests()
if(CMAKE_CROSSCOMPILING)
  add_test(NAME Emulator.Starts
    COMMAND ${CMAKE_COMMAND}
      "-DSERVER=${PGMDEV_EMULATOR_SERVER}"
      "-DEMULATOR=${CMAKE_CROSSCOMPILING_EMULATOR}"
      "-DCOMMAND=$<TARGET_FILE:pgmdev_command>;--help"
      -DLOG=${CMAKE_CURRENT_BINARY_DIR}/emulator.log
      -P ${PROJECT_SOURCE_DIR}/cmake/start_emulator.cmake)
  set_tests_properties(Emulator.Starts PROPERTIES FIXTURES_SETUP emulator)
  if(PGMDEV_EMULATOR_SERVER)
    add_test(NAME Emulator.Stops COMMAND ${PGMDEV_EMULATOR_SERVER} -k)
    set_tests_properties(Emulator.Stops PROPERTIES FIXTURES_CLEANUP emulator)
  endif()
endif()

# Wine makes its prefix when it is first started, and two first starts at the same time are in each other's way. So there
# is one, before anything that is built runs: what runs while building depends on the file PGMDEV_EMULATOR_READY.

set(PGMDEV_EMULATOR_READY ${PROJECT_BINARY_DIR}/wine_prefix_made)
add_custom_command(OUTPUT ${PGMDEV_EMULATOR_READY}
  COMMAND ${CMAKE_COMMAND} -E make_directory ${PGMDEV_WINE_PREFIX}  # without it the server does not start
  COMMAND ${CMAKE_COMMAND}
    "-DSERVER=${PGMDEV_EMULATOR_SERVER}"
    "-DEMULATOR=${CMAKE_CROSSCOMPILING_EMULATOR}"
    "-DCOMMAND=wineboot;--init"
    -DLOG=${PROJECT_BINARY_DIR}/wine_prefix.log
    -DANEW=ON
    -P ${PROJECT_SOURCE_DIR}/cmake/start_emulator.cmake
  COMMAND ${CMAKE_COMMAND} -E touch ${PGMDEV_EMULATOR_READY}
  COMMENT "Making a prefix for Wine"
  VERBATIM)

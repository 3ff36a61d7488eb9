# A first program (COMMAND) under the emulator (EMULATOR), whose server (SERVER) from then on stays until a minute after the
# last one. The processes that stay with it write where the first program does: to a file (LOG). If that were what a test
# says, ctest would take the test to last as long as they do.
set(to_the_log OUTPUT_FILE ${LOG} ERROR_FILE ${LOG})
if(SERVER)
  execute_process(COMMAND ${SERVER} -p60 ${to_the_log})  # fails where there is one already, which will do
endif()
execute_process(COMMAND ${EMULATOR} ${COMMAND} --help ${to_the_log} RESULT_VARIABLE result)
if(NOT result EQUAL 0)
  file(READ ${LOG} said)
  if(SERVER)
    execute_process(COMMAND ${SERVER} -k)
  endif()
  message(FATAL_ERROR "The emulator ends with ${result} and says:\n${said}")
endif()

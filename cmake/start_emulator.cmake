# A first program (COMMAND, with its arguments) under the emulator (EMULATOR), whose server (SERVER) from then on stays until
# five minutes after the last one. A server that ends with a program may take the next one's call just before it is gone, and
# that one fails. The processes that stay with the server write where the first program does: to a file (LOG). If that were
# what a build or a test says, these would wait for the processes to end. Where what the server serves is made ANEW, there
# may be one still that has served what stood there before.
if(SERVER)
  if(ANEW)
    execute_process(COMMAND ${SERVER} -k OUTPUT_QUIET ERROR_QUIET)  # fails where there is none
  endif()
  set(there_is_one_already 2)
  execute_process(COMMAND ${SERVER} -p300 OUTPUT_FILE ${LOG} ERROR_FILE ${LOG} RESULT_VARIABLE result)
  if(NOT result EQUAL 0 AND NOT result EQUAL there_is_one_already)
    file(READ ${LOG} said)
    message(FATAL_ERROR "The emulator's server ends with ${result} and says:\n${said}")
  endif()
endif()
execute_process(COMMAND ${EMULATOR} ${COMMAND} OUTPUT_FILE ${LOG} ERROR_FILE ${LOG} RESULT_VARIABLE result)
if(NOT result EQUAL 0)
  file(READ ${LOG} said)
  message(FATAL_ERROR "The emulator ends with ${result} and says:\n${said}")
endif()

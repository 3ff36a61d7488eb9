# The files that the command writes on another system (COMMAND, run by EMULATOR, built in BUILD) are byte for byte those
# that it writes on this one (built in NATIVE).

if(NOT EXISTS ${NATIVE}/bin/pgmdev)
  message("SKIPPED: nothing is built in ${NATIVE}")
  return()
endif()

function(expect_same file other)
  execute_process(COMMAND ${CMAKE_COMMAND} -E compare_files ${file} ${other} RESULT_VARIABLE result)
  if(NOT result EQUAL 0)
    message(SEND_ERROR "${file} and ${other} differ")
  endif()
endfunction()

# What the builds made.
file(GLOB_RECURSE made RELATIVE ${NATIVE} ${NATIVE}/share/tessary/*.pcf ${NATIVE}/share/tessary/*.pcf.info)
if(NOT made)
  message(FATAL_ERROR "there are no databases in ${NATIVE}")
endif()
foreach(file share/tessary/h/pgm_parts.txt page/index.html ${made})
  expect_same(${NATIVE}/${file} ${BUILD}/${file})
endforeach()

# What the commands write: the container, and their answers.
set(work ${BUILD}/tests/same_bytes)
file(REMOVE_RECURSE ${work})
file(MAKE_DIRECTORY ${work}/native ${work}/other)
function(write_with side)
  cmake_parse_arguments(PARSE_ARGV 1 with "" "" "COMMAND")
  set(pgmdev ${with_COMMAND} --module-dir ${work}/${side})
  execute_process(COMMAND ${pgmdev} params write 0 ${NATIVE}/share/tessary/h/pgm_parts.txt COMMAND_ERROR_IS_FATAL ANY)
  execute_process(COMMAND ${pgmdev} hps add spi --like 26 device_name=MINE COMMAND_ERROR_IS_FATAL ANY
    OUTPUT_FILE ${work}/${side}/added.txt)
  execute_process(COMMAND ${pgmdev} --json flash list COMMAND_ERROR_IS_FATAL ANY
    OUTPUT_FILE ${work}/${side}/list.json)
endfunction()
write_with(native COMMAND ${NATIVE}/bin/pgmdev)
write_with(other COMMAND ${EMULATOR} ${COMMAND})
foreach(file pgm_flash.ini added.txt list.json)
  expect_same(${work}/native/${file} ${work}/other/${file})
endforeach()

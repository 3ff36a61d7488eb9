# The guides for those who have no sources: the same texts, written for the installed command. They are installed beside
# the source tables that they work on, the examples, and the page for browsers.

set(guides_dir ${PROJECT_BINARY_DIR}/guides)
set(guides
  docs/adding-a-boot-flash.md
  docs/adding-a-flash-chip.md
  docs/adding-a-profile.md
  docs/command.md
  docs/command-sfdp.md
  docs/formats.md
  docs/page.md
  docs/python.md
  docs/performance.md
  docs/your-own-flash.md)
set(table_pages data/dev_info/README.md data/flash/README.md data/hps/README.md)

# without_sources(TEXT): leaves out what stands between the marks, which only those can do who have the sources.
function(without_sources variable)
  set(begin "<!-- sources -->\n")
  set(end "<!-- end of sources -->\n")
  string(LENGTH ${end} end_length)
  set(text "${${variable}}")
  string(FIND "${text}" "${begin}" place)
  while(NOT place EQUAL -1)
    string(FIND "${text}" "${end}" end_place)
    if(end_place LESS place)
      message(FATAL_ERROR "${page}: what begins at \"sources\" does not end at \"end of sources\"")
    endif()
    math(EXPR rest_place "${end_place} + ${end_length}")
    string(SUBSTRING "${text}" 0 ${place} before)
    string(SUBSTRING "${text}" ${rest_place} -1 rest)
    string(CONCAT text "${before}" "${rest}")
    string(FIND "${text}" "${begin}" place)
  endwhile()
  set(${variable} "${text}" PARENT_SCOPE)
endfunction()

file(REMOVE_RECURSE ${guides_dir})  # with guides that are no more
foreach(page IN LISTS guides table_pages)
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/${page})
  file(READ ${PROJECT_SOURCE_DIR}/${page} text)
  without_sources(text)
  string(REGEX REPLACE "<!-- (not run: |ends with |written to )[^\n]* -->\n\n" "" text "${text}")  # marks for the tests
  string(REPLACE "./run " "pgmdev " text "${text}")
  string(REPLACE "docs/" "guides/" text "${text}")
  if(page MATCHES "adding-a-(flash|profile)")
    string(APPEND text "\nThe files below `data` are installed beside this guide: copy the directory `data` that is above\n"
      "it to a place of your own, and work there.\n")
  endif()
  string(REGEX REPLACE "^docs/" "guides/" page ${page})
  file(WRITE ${guides_dir}/${page} "${text}")
endforeach()

install(FILES ${PROJECT_BINARY_DIR}/page/index.html DESTINATION ${PGMDEV_INSTALL_DOCDIR}/page COMPONENT runtime)
install(DIRECTORY ${guides_dir}/ DESTINATION ${PGMDEV_INSTALL_DOCDIR} COMPONENT runtime)
install(FILES data/flash/pgm_flash.csv data/flash/pgm_flash.csv.accepted data/flash/aliases.csv data/flash/sources.csv
  data/flash/left_out.csv data/flash/ambiguities.csv data/flash/identifications.csv
  DESTINATION ${PGMDEV_INSTALL_DOCDIR}/data/flash COMPONENT runtime)
install(FILES data/dev_info/pgm_dev_info.csv data/dev_info/pgm_dev_info.csv.accepted
  DESTINATION ${PGMDEV_INSTALL_DOCDIR}/data/dev_info COMPONENT runtime)
install(FILES data/hps/spi.csv data/hps/nand.csv DESTINATION ${PGMDEV_INSTALL_DOCDIR}/data/hps COMPONENT runtime)
install(DIRECTORY docs/performance DESTINATION ${PGMDEV_INSTALL_DOCDIR}/guides COMPONENT runtime)
install(FILES examples/chips.py examples/find.c examples/identify.c examples/identify.cpp examples/tessary.conf
  DESTINATION ${PGMDEV_INSTALL_DOCDIR}/examples
  COMPONENT runtime)

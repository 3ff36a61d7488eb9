# The installation in which fuzzed commands look, and the tables that fuzzing begins with: a few rows of each kind of what is
# shipped. How many there are is not the point, and reading all of them each time would take longer than what is looked at.
# Included by seeds.cmake.

# rows(OUTPUT HEADER SOURCE REGEX): the first lines of a table, and those of the others that match, without the blanks that
# line columns up.
function(rows output header source regex)
  beginning(${output} ${header} ${source})
  file(READ ${output} text)
  file(STRINGS ${source} lines REGEX "${regex}")
  list(JOIN lines "\n" rows)
  string(REGEX REPLACE ", +" "," text "${text}${rows}\n")
  file(WRITE ${output} "${text}")
endfunction()

# Chips of several dies and of one, with and without 4-byte addresses, that answer RDID or one byte, at several places, with
# the same response as others, behind a switch, with several rows; those that samples name.
set(chips M25P05 M25P20 MT25QL128 N25Q00 MT25QL01G MT35XL01GBBA1 M45PE40 S25FL128S1 S25FL128S0 EN25QE16A GD25Q256 GD25S512MD
  P25Q80H P25Q80L W25Q80BL W25Q64JV W25Q128JV)
list(JOIN chips "|" chips)
set(tables ${PLACE}/tables)
set(databases ${PLACE}/devices/programmer)
file(REMOVE_RECURSE ${PLACE})
file(MAKE_DIRECTORY ${tables} ${databases} ${PLACE}/h)

rows(${tables}/pgm_flash.csv 8 ${SOURCE}/data/flash/pgm_flash.csv "^[^,]+, *(${chips}),")
rows(${tables}/ambiguities.csv 3 ${SOURCE}/data/flash/ambiguities.csv "^[0-9A-F]+, (${chips})( (${chips}))*,")
rows(${tables}/identifications.csv 3 ${SOURCE}/data/flash/identifications.csv "^(${chips}),")
rows(${tables}/aliases.csv 1 ${SOURCE}/data/flash/aliases.csv "^[^,]+,(${chips}),")
rows(${tables}/sources.csv 1 ${SOURCE}/data/flash/sources.csv "^(${chips}),")
file(COPY ${SOURCE}/data/dev_info/pgm_dev_info.csv DESTINATION ${tables})  # which has as many rows as it must have
rows(${PLACE}/h/pgm_parts.txt 3 ${INSTALLATION}/h/pgm_parts.txt "^[^ ]+ [^ ]+ [^ ]+ [0-9]*00 ")
set(tools ${COMMAND} --install-dir ${PLACE} --module-dir ${PLACE})
run(${tools} flash compile ${tables}/pgm_flash.csv ${databases}/pgm_flash.pcf)
run(${tools} profile compile ${tables}/pgm_dev_info.csv ${databases}/pgm_dev_info.pcf)

# Run by cpack when it has packed: packs archives again, with their files in the order of their names, of one time, and of
# no owner in particular. cpack takes files as the file system lists them. What is inside of Debian's packages is in order
# already, but their parts have the umask of whoever packs.

# without_ldconfig_scripts(PARTS): cpack adds scripts that call ldconfig to each package with libraries. Debian has a trigger
# for that instead, which debian_package.cmake writes.
function(without_ldconfig_scripts parts)
  set(control ${parts}/control)
  file(MAKE_DIRECTORY ${control})
  execute_process(COMMAND tar -xpzf ${control}.tar.gz -C ${control} COMMAND_ERROR_IS_FATAL ANY)
  if(NOT EXISTS ${control}/triggers)
    return()
  endif()
  file(REMOVE ${control}/postinst ${control}/postrm)
  file(GLOB files RELATIVE ${control} ${control}/*)
  execute_process(
    COMMAND tar --create --format=gnu --owner=0 --group=0 --numeric-owner --mtime=${time} -C ${control} ${files}
    COMMAND gzip -9n
    OUTPUT_FILE ${control}.tar.gz COMMAND_ERROR_IS_FATAL ANY)
endfunction()

set(ENV{TZ} UTC)  # zip files have local times
string(TIMESTAMP time "%Y-%m-%d %H:%M:%S UTC" UTC)  # that of SOURCE_DATE_EPOCH
cmake_path(GET CPACK_TEMPORARY_DIRECTORY PARENT_PATH above)
file(GLOB_RECURSE files RELATIVE ${above} ${CPACK_TEMPORARY_DIRECTORY}/*)
list(SORT files)
list(JOIN files "\n" lines)
file(WRITE ${above}/files.txt "${lines}\n")

foreach(package IN LISTS CPACK_PACKAGE_FILES)
  if(package MATCHES "\\.tar\\.gz$")
    execute_process(
      COMMAND tar --create --format=gnu --owner=0 --group=0 --numeric-owner --mtime=${time} --files-from=files.txt
      COMMAND gzip -9n
      WORKING_DIRECTORY ${above} OUTPUT_FILE ${package} COMMAND_ERROR_IS_FATAL ANY)
  elseif(package MATCHES "\\.zip$")
    file(REMOVE ${package})
    execute_process(
      COMMAND touch --date=${time} ${files}
      WORKING_DIRECTORY ${above} COMMAND_ERROR_IS_FATAL ANY)
    execute_process(
      COMMAND zip -q -X -@ ${package}
      WORKING_DIRECTORY ${above} INPUT_FILE ${above}/files.txt COMMAND_ERROR_IS_FATAL ANY)
  elseif(package MATCHES "\\.deb$")
    set(parts ${above}/parts)
    file(REMOVE_RECURSE ${parts})
    file(MAKE_DIRECTORY ${parts})
    execute_process(COMMAND ar x ${package} WORKING_DIRECTORY ${parts} COMMAND_ERROR_IS_FATAL ANY)
    without_ldconfig_scripts(${parts})
    file(REMOVE ${package})
    execute_process(COMMAND ar qcD ${package} debian-binary control.tar.gz data.tar.gz
      WORKING_DIRECTORY ${parts} COMMAND_ERROR_IS_FATAL ANY)
  endif()
endforeach()

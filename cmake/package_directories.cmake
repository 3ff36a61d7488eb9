# Run by cpack before it packs: the directories on the way to the files are open to all, whatever the umask of whoever
# packs.

file(GLOB_RECURSE entries LIST_DIRECTORIES TRUE ${CPACK_TEMPORARY_DIRECTORY}/*)
foreach(entry IN LISTS entries)
  if(IS_DIRECTORY ${entry})
    file(CHMOD ${entry} PERMISSIONS
      OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
  endif()
endforeach()

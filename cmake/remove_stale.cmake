# remove_stale(PATTERN... KEEP FILE...): of the files that fit the patterns, only these stay. What was copied into the build
# tree from a source that has another name by now could still be imported, and would be installed.
function(remove_stale)
  cmake_parse_arguments(PARSE_ARGV 0 ARG "" "" KEEP)
  file(GLOB stale ${ARG_UNPARSED_ARGUMENTS})
  list(REMOVE_ITEM stale ${ARG_KEEP})
  if(stale)
    file(REMOVE ${stale})
  endif()
endfunction()

# Read by cpack: every file in a package gets the time of the commit, unless SOURCE_DATE_EPOCH already says another.
# Sources outside of a repository have no commit; theirs is a day that every archive format can hold.

if(NOT DEFINED ENV{SOURCE_DATE_EPOCH})
  execute_process(COMMAND git -C ${CPACK_PGMDEV_SOURCE_DIR} log -1 --format=%ct
    OUTPUT_VARIABLE commit_time OUTPUT_STRIP_TRAILING_WHITESPACE ERROR_QUIET)
  if(NOT commit_time)
    set(commit_time 315619200)  # 2 January 1980: the day before is 1979 in some time zones
  endif()
  set(ENV{SOURCE_DATE_EPOCH} ${commit_time})
endif()

# Debian's packages keep to Debian's rules: no error and no warning. Exceptions have reasons (cmake/debian/).
include(${CMAKE_CURRENT_LIST_DIR}/common.cmake)

set(WORK_DIR ${WORK_DIR}-packages)
file(GLOB packages ${WORK_DIR}/first/*.deb)
list(LENGTH packages count)
list(FILTER EXPECTED_PACKAGES INCLUDE REGEX "\\.deb$")
list(LENGTH EXPECTED_PACKAGES expected_count)
expect("packages for Debian" "${count}" "${expected_count}")
set(ENV{TMPDIR} ${WORK_DIR}/temporary)  # where it leaves some files
file(MAKE_DIRECTORY $ENV{TMPDIR})
run(said lintian --allow-root --fail-on error,warning --tag-display-limit 0 ${packages})
expect("lintian said" "${said}" "")

# What lintian does not look at: programs linked with the libraries get the package that has them.
foreach(package IN LISTS packages)
  if(package MATCHES "/pgmdev_")
    run(symbols dpkg-deb --info ${package} symbols shlibs)
    foreach(line
        "libpgmdev.so.1 pgmdev #MINVER#\n"
        "libpgmdev_c.so.1 pgmdev #MINVER#\n"
        "libpgmhost.so.1 pgmdev #MINVER#\n"
        "libpgmdev 1 pgmdev (>= ${VERSION})\n")
      string(FIND "${symbols}" "${line}" place)
      if(place EQUAL -1)
        message(FATAL_ERROR "symbols and shlibs lack ${line}: ${symbols}")
      endif()
    endforeach()
  endif()
endforeach()

# Run by cpack before it packs for Debian: adds what Debian's rules ask of each package, and compresses manual pages. What
# is installed otherwise has none of it.

if(NOT CPACK_GENERATOR STREQUAL "DEB")
  return()
endif()
set(ENV{TZ} UTC)

# write_text(FILE TEXT): readable for all, whatever the umask of whoever packs.
function(write_text file text)
  file(WRITE ${file} "${text}")
  file(CHMOD ${file} PERMISSIONS OWNER_READ OWNER_WRITE GROUP_READ WORLD_READ)
endfunction()

function(compress)
  execute_process(COMMAND gzip -9nf ${ARGN} COMMAND_ERROR_IS_FATAL ANY)
endfunction()

string(TIMESTAMP day "%a, %d %b %Y %H:%M:%S +0000" UTC)  # that of SOURCE_DATE_EPOCH
string(TIMESTAMP year "%Y" UTC)

# Who made it, and what of others is in its programs.
set(copyright "Format: https://www.debian.org/doc/packaging-manuals/copyright-format/1.0/
Upstream-Name: pgmdev
Upstream-Contact: ${CPACK_PACKAGE_CONTACT}

Files: *
Copyright: ${year} The makers of Tessary
License: none-stated
 No licence is stated: all rights stay with the makers.
")
foreach(third_party IN LISTS CPACK_PGMDEV_THIRD_PARTY)
  string(REPLACE "|" ";" fields "${third_party}")
  list(POP_FRONT fields name package licence relationship)
  if(relationship STREQUAL "STATIC_LINK")
    string(APPEND compiled_in "
Files: usr/bin/pgmdev usr/lib/*
Copyright: the authors of ${name}
License: ${licence}
Comment: ${name} is compiled in. Authors and licence are told in
 /usr/share/doc/pgmdev/licences/${package}.txt
")
    list(APPEND licences ${licence})
  endif()
endforeach()
list(REMOVE_DUPLICATES licences)
foreach(licence IN LISTS licences)
  string(APPEND compiled_in "
License: ${licence}
 Its text, as it applies to each of the works above, is in the files below
 /usr/share/doc/pgmdev/licences that are named there.
")
endforeach()

foreach(component IN LISTS CPACK_COMPONENTS_ALL)
  string(TOUPPER ${component} upper)
  set(package ${CPACK_DEBIAN_${upper}_PACKAGE_NAME})
  set(root ${CPACK_TEMPORARY_DIRECTORY}/${component})
  set(documents ${root}/usr/share/doc/${package})
  write_text(${documents}/changelog "pgmdev (${CPACK_PACKAGE_VERSION}) unstable; urgency=medium

  * Version ${CPACK_PACKAGE_VERSION}. The package pgmdev-dev tells what has changed, in
    /usr/share/doc/pgmdev/CHANGELOG.md.

 -- ${CPACK_PACKAGE_CONTACT}  ${day}
")
  compress(${documents}/changelog)
  if(component STREQUAL "runtime")
    write_text(${documents}/copyright "${copyright}${compiled_in}")
  else()
    write_text(${documents}/copyright "${copyright}")
  endif()
  set(overrides ${CPACK_PGMDEV_SOURCE_DIR}/cmake/debian/${package}.lintian-overrides)
  if(EXISTS ${overrides})
    file(READ ${overrides} text)
    write_text(${root}/usr/share/lintian/overrides/${package} "${text}")
  endif()
  file(GLOB pages ${root}/usr/share/man/man1/*.1)
  if(pages)
    compress(${pages})
  endif()
endforeach()

# What the libraries export, with the version from which on: which package a program needs that is linked with them.
set(control ${CPACK_PGMDEV_CONTROL_DIR})
set(runtime ${CPACK_DEBIAN_RUNTIME_PACKAGE_NAME})
file(MAKE_DIRECTORY ${control})
execute_process(
  COMMAND dpkg-gensymbols -p${runtime} -v${CPACK_PACKAGE_VERSION} -P${CPACK_TEMPORARY_DIRECTORY}/runtime -O${control}/symbols
  OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
write_text(${control}/triggers "activate-noawait ldconfig\n")
set(shlibs "")
foreach(library pgmdev pgmdev_c pgmhost)
  string(APPEND shlibs "lib${library} ${CPACK_PACKAGE_VERSION_MAJOR} ${runtime} (>= ${CPACK_PACKAGE_VERSION})\n")
endforeach()
write_text(${control}/shlibs "${shlibs}")

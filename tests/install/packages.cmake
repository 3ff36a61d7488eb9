# The packages: twice the same bytes, whoever packs, and a command that works after unpacking.
include(${CMAKE_CURRENT_LIST_DIR}/common.cmake)

set(ENV{WINEPATH} "")  # a package brings all it needs

set(WORK_DIR ${WORK_DIR}-packages)
file(REMOVE_RECURSE ${WORK_DIR})
file(MAKE_DIRECTORY ${WORK_DIR}/first ${WORK_DIR}/second)
set(umask_of_first 022)
set(umask_of_second 077)
foreach(round first second)
  run(ignored sh -c "umask ${umask_of_${round}} && exec \"$@\"" sh
    ${CPACK} --config ${BUILD_DIR}/CPackConfig.cmake -B ${WORK_DIR}/${round})
  file(GLOB packages RELATIVE ${WORK_DIR}/${round} ${WORK_DIR}/${round}/*.*)
  list(SORT packages)
  expect("packages" "${packages}" "${EXPECTED_PACKAGES}")
endforeach()
foreach(package ${packages})
  file(SHA256 ${WORK_DIR}/first/${package} first)
  file(SHA256 ${WORK_DIR}/second/${package} second)
  expect("digest of ${package}" "${second}" "${first}")
endforeach()

# identify(COMMAND): the command of a package finds that package's data.
function(identify command)
  run(said ${EMULATOR} ${command} --json flash identify EF4017)
  string(JSON name GET "${said}" devices 0 device_name)
  expect("${command} found" "${name}" "W25Q64JV")
endfunction()

foreach(package ${packages})
  if(package MATCHES "^(.+)\\.(tar\\.gz|zip)$")
    set(top ${CMAKE_MATCH_1})
    file(ARCHIVE_EXTRACT INPUT ${WORK_DIR}/first/${package} DESTINATION ${WORK_DIR}/unpacked)
    identify(${WORK_DIR}/unpacked/${top}/bin/pgmdev${SUFFIX})
  elseif(package MATCHES "^pgmdev_")
    run(ignored dpkg-deb -x ${WORK_DIR}/first/${package} ${WORK_DIR}/debian)
    identify(${WORK_DIR}/debian/usr/bin/pgmdev)
    run(depends dpkg-deb -f ${WORK_DIR}/first/${package} Depends)
    foreach(needed "libc6 \\(>= " "libstdc\\+\\+6 \\(>= " libnettle8 "libdeflate0 \\(>= " "zlib1g \\(>= ")
      if(NOT depends MATCHES "${needed}")
        message(FATAL_ERROR "${package} depends on ${depends}, which lacks ${needed}")
      endif()
    endforeach()
  elseif(package MATCHES "^pgmdev-dev_")
    run(depends dpkg-deb -f ${WORK_DIR}/first/${package} Depends)
    expect("${package} depends on" "${depends}" "pgmdev (= ${VERSION})\n")
  elseif(package MATCHES "^python3-pgmdev_")
    run(ignored dpkg-deb -x ${WORK_DIR}/first/${package} ${WORK_DIR}/debian)  # over the libraries, which come before it
    run(said ${PYTHON} -B -c "import sys
sys.path.insert(0, '${WORK_DIR}/debian/usr/lib/python3/dist-packages')
import pgmdev
print(pgmdev.__file__, pgmdev.flash.identify('EF4017').record.device_name)")
    expect("${package} found" "${said}"
      "${WORK_DIR}/debian/usr/lib/python3/dist-packages/pgmdev/__init__.py W25Q64JV\n")
    run(depends dpkg-deb -f ${WORK_DIR}/first/${package} Depends)
    foreach(needed "libc6 \\(>= " "libstdc\\+\\+6 \\(>= " "pgmdev \\(= ${VERSION}\\)" "python3 \\(<< ")
      if(NOT depends MATCHES "${needed}")
        message(FATAL_ERROR "${package} depends on ${depends}, which lacks ${needed}")
      endif()
    endforeach()
  endif()
endforeach()

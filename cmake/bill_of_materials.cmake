# Run when the project is installed: writes the bill of materials, pgmdev.spdx.json (SPDX 2.3), which tells what of others is
# in the programs or comes with them, in which version and under which licence.
#
# VERSION, OUTPUT (below the prefix), THIRD_PARTY (third_party.cmake)

cmake_path(GET CMAKE_CURRENT_LIST_DIR PARENT_PATH CPACK_PGMDEV_SOURCE_DIR)
include(${CMAKE_CURRENT_LIST_DIR}/package_time.cmake)
string(TIMESTAMP created "%Y-%m-%dT%H:%M:%SZ" UTC)  # that of the commit

# package(ID NAME VERSION LICENCE): one package as SPDX has it.
function(package id name version licence)
  string(APPEND packages
    "${separator}\n    {\"SPDXID\": \"SPDXRef-${id}\", \"name\": \"${name}\", \"versionInfo\": \"${version}\","
    " \"downloadLocation\": \"NOASSERTION\", \"filesAnalyzed\": false, \"licenseConcluded\": \"NOASSERTION\","
    " \"licenseDeclared\": \"${licence}\", \"copyrightText\": \"NOASSERTION\"}")
  set(packages "${packages}" PARENT_SCOPE)
  set(separator "," PARENT_SCOPE)
endfunction()

set(packages "")
set(separator "")
set(relationships "\n    {\"spdxElementId\": \"SPDXRef-DOCUMENT\", \"relationshipType\": \"DESCRIBES\", \"relatedSpdxElement\": \"SPDXRef-pgmdev\"}")
package(pgmdev pgmdev ${VERSION} NOASSERTION)
foreach(component IN LISTS THIRD_PARTY)
  string(REPLACE "|" ";" fields "${component}")
  list(POP_FRONT fields name debian_package licence relationship)
  execute_process(COMMAND dpkg-query --show "--showformat=\${Version}" ${debian_package}
    OUTPUT_VARIABLE version ERROR_QUIET)
  if(NOT version)
    set(version NOASSERTION)  # it does not come from Debian
  endif()
  string(REGEX REPLACE "[^A-Za-z0-9.]" "-" id ${name})
  package(${id} ${name} "${version}" "${licence}")
  string(APPEND relationships
    ",\n    {\"spdxElementId\": \"SPDXRef-pgmdev\", \"relationshipType\": \"${relationship}\", \"relatedSpdxElement\": \"SPDXRef-${id}\"}")
endforeach()

set(file "$ENV{DESTDIR}${CMAKE_INSTALL_PREFIX}/${OUTPUT}")
file(WRITE "${file}" "{
  \"spdxVersion\": \"SPDX-2.3\",
  \"dataLicense\": \"CC0-1.0\",
  \"SPDXID\": \"SPDXRef-DOCUMENT\",
  \"name\": \"pgmdev-${VERSION}\",
  \"documentNamespace\": \"urn:tessary:pgmdev:${VERSION}:${created}\",
  \"creationInfo\": {\"created\": \"${created}\", \"creators\": [\"Organization: The makers of Tessary\"]},
  \"packages\": [${packages}
  ],
  \"relationships\": [${relationships}
  ]
}
")
file(CHMOD "${file}" PERMISSIONS OWNER_READ OWNER_WRITE GROUP_READ WORLD_READ)  # whatever the umask

# Functions of C may be called by programs of every compiler. Microsoft's linker, and those that work like it, read an import
# library of another kind than mingw-w64's: pgmdev_c.lib, where there is LLVM's tool that writes it.
find_program(PGMDEV_LLVM_DLLTOOL llvm-dlltool DOC "LLVM's dlltool, for the import library of Microsoft's kind")
if(NOT PGMDEV_LLVM_DLLTOOL)
  return()
endif()
set(exports ${CMAKE_CURRENT_BINARY_DIR}/pgmdev_c.def)
set(import_library ${CMAKE_ARCHIVE_OUTPUT_DIRECTORY}/pgmdev_c.lib)
target_link_options(pgmdev_c PRIVATE -Wl,--output-def,${exports})
add_custom_command(TARGET pgmdev_c POST_BUILD
  COMMAND ${PGMDEV_LLVM_DLLTOOL} -m i386:x86-64 -D pgmdev_c.dll -d ${exports} -l ${import_library}
  BYPRODUCTS ${exports} ${import_library}
  VERBATIM)
install(FILES ${import_library} DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT development)

# A program in C that is compiled and linked as Microsoft's tools would: their conventions, their kind of import library.
include(${CMAKE_CURRENT_LIST_DIR}/common.cmake)

set(consumer ${WORK_DIR}/microsoft_consumer)
run(ignored ${CLANG} --target=x86_64-pc-windows-msvc -ffreestanding -std=c99 -Wall -Wextra -Wpedantic -Werror
  -I${INSTALLED}/${INCLUDE_DIR} -x c -c ${SOURCE_DIR}/tests/consumer_of_another_compiler/consumer.c -o ${consumer}.obj)
run(c_library ${COMPILER} -print-file-name=libmsvcrt.a)
string(STRIP "${c_library}" c_library)
run(ignored ${LLD_LINK} -nologo -nodefaultlib -entry:start -subsystem:console
  ${consumer}.obj ${INSTALLED}/${LIB_DIR}/pgmdev_c.lib ${c_library} -out:${consumer}.exe)
run(said ${EMULATOR} ${consumer}.exe)
expect("the program said" "${said}" "W25Q64JV\n")

# What CMake links with where it knows that compiler to be one of that kind.
configure_project("like Microsoft" "set(MSVC TRUE)
find_package(pgmdev CONFIG REQUIRED)
get_target_property(library pgmdev::pgmdev_c IMPORTED_IMPLIB_RELEASE)
if(NOT EXISTS \"\${library}\" OR NOT library MATCHES [[/pgmdev_c\\.lib$]])
  message(FATAL_ERROR \"pgmdev::pgmdev_c is linked with \${library}\")
endif()" "-Dpgmdev_DIR=${INSTALLED}/${CMAKE_PACKAGE_DIR}")
if(NOT configured)
  message(FATAL_ERROR "${errors}")
endif()

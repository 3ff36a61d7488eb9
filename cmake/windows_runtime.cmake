# The DLLs that ours need and that Windows does not have. PGMDEV_RUNTIME_DLLS lists them, third_party.cmake whose they are;
# the target runtime_dlls puts them beside our programs, so that these run where they were built.

find_package(ZLIB REQUIRED)
set(names libstdc++-6.dll libgcc_s_seh-1.dll libwinpthread-1.dll zlib1.dll)

set(PGMDEV_RUNTIME_DLLS)
foreach(name ${names})
  # The compiler knows where its own runtime is. It answers with the bare name when it does not.
  execute_process(COMMAND ${CMAKE_CXX_COMPILER} -print-file-name=${name}
    OUTPUT_VARIABLE found OUTPUT_STRIP_TRAILING_WHITESPACE)
  if(NOT EXISTS "${found}")
    find_file(PGMDEV_DLL_${name} ${name} PATH_SUFFIXES bin lib REQUIRED)
    set(found ${PGMDEV_DLL_${name}})
  endif()
  file(REAL_PATH ${found} found)
  list(APPEND PGMDEV_RUNTIME_DLLS ${found})
endforeach()

set(copies)
foreach(dll ${PGMDEV_RUNTIME_DLLS})
  get_filename_component(name ${dll} NAME)
  set(copy ${CMAKE_RUNTIME_OUTPUT_DIRECTORY}/${name})
  add_custom_command(OUTPUT ${copy}
    COMMAND ${CMAKE_COMMAND} -E copy_if_different ${dll} ${copy}
    DEPENDS ${dll}
    COMMENT "Copying ${name}"
    VERBATIM)
  list(APPEND copies ${copy})
endforeach()
add_custom_target(runtime_dlls ALL DEPENDS ${copies})

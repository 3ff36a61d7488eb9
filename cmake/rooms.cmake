# A room is a directory of sources that serve one purpose. The files of a room can be compiled as one, which reads the
# headers that they share only once: of a build from nothing, most of the time goes there. A file by itself is compiled
# faster, which is better for working on it.
#
# A room of many files is compiled in parts: one change is then compiled sooner, and mingw-w64's linker takes a time that
# grows with the square of what is in one object file. Rooms of few files are compiled together, but not those of tests,
# where each room has the same name for what it compares with.
#
# What the files that are compiled as one have in anonymous namespaces must then differ by name.

set(PGMDEV_COMPILE_BY_ROOM all CACHE STRING "Whose files are compiled a room at a time: all, tests or none")
set_property(CACHE PGMDEV_COMPILE_BY_ROOM PROPERTY STRINGS all tests none)

# read_common_headers_once(TARGET [HEADER...]): for all rooms of TARGET, one of the products, what nearly all include. With
# Clang, also where it stands in for GCC (tests_by_clang.cmake), a room then takes a quarter less. GCC gains a tenth and warns
# of what it finds in its own headers.
function(read_common_headers_once target)
  if(CMAKE_CXX_COMPILER_ID STREQUAL "Clang" OR CMAKE_CXX_COMPILER_LAUNCHER MATCHES "/compile_with_clang\\.sh;")
    target_precompile_headers(${target} PRIVATE
      <algorithm> <array> <charconv> <filesystem> <functional> <map> <memory> <optional> <set> <span> <stdexcept> <string>
      <string_view> <utility> <variant> <vector> ${ARGN})
  endif()
endfunction()

# compile_by_room(TARGET WHOSE [COUNT]): TARGET, one of the `tests` or of the `products`, is compiled a room at a time if
# PGMDEV_COMPILE_BY_ROOM says so, COUNT files at most as one, 20 if that is not said. What only Windows has, whose headers
# define half the dictionary, is a room of its own, and in tests compiled a file at a time, for some try the order of headers.
# Sources of other directories and generated ones are compiled by themselves.
function(compile_by_room target whose)
  if(NOT PGMDEV_COMPILE_BY_ROOM STREQUAL all AND NOT PGMDEV_COMPILE_BY_ROOM STREQUAL whose)
    return()
  endif()
  set_target_properties(${target} PROPERTIES UNITY_BUILD ON UNITY_BUILD_MODE GROUP)
  # Of anonymous namespaces in what is included, as the files of a room are then.
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    target_compile_options(${target} PRIVATE -Wno-subobject-linkage)
  endif()
  set(most 20)
  if(ARGC GREATER 2)
    set(most ${ARGV2})
  endif()
  get_target_property(sources ${target} SOURCES)
  set(rooms "")
  foreach(source IN LISTS sources)
    if(NOT source MATCHES "^[^/$].*\\.cpp$" OR (whose STREQUAL tests AND source MATCHES "_windows\\.cpp$"))
      continue()
    endif()
    cmake_path(GET source PARENT_PATH room)
    if(source MATCHES "_windows\\.cpp$")
      set(room of_windows)
    endif()
    string(MAKE_C_IDENTIFIER "room_${room}" room)
    if(NOT room IN_LIST rooms)
      list(APPEND rooms ${room})
      set(files_of_${room} "")
    endif()
    list(APPEND files_of_${room} ${source})
  endforeach()
  set(few 0)
  if(whose STREQUAL products)
    math(EXPR few "${most} / 2")
  endif()
  set(files_of_small_rooms "")
  foreach(room IN LISTS rooms)
    list(LENGTH files_of_${room} count)
    if(count LESS few AND NOT room STREQUAL room_of_windows)
      list(APPEND files_of_small_rooms ${files_of_${room}})
    else()
      compile_in_parts(${room} ${most} ${files_of_${room}})
    endif()
  endforeach()
  compile_in_parts(small_rooms ${most} ${files_of_small_rooms})
endfunction()

# compile_in_parts(NAME MOST FILE...): as few parts as it takes, each as large as the others.
function(compile_in_parts name most)
  list(LENGTH ARGN count)
  math(EXPR parts "(${count} + ${most} - 1) / ${most}")
  set(number 0)
  foreach(file IN LISTS ARGN)
    math(EXPR part "${number} * ${parts} / ${count}")
    set_source_files_properties(${file} PROPERTIES UNITY_GROUP ${name}_${part})
    math(EXPR number "${number} + 1")
  endforeach()
endfunction()

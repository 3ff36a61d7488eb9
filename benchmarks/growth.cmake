# The libraries, and growth_bench, with catalogs of several sizes, each in a tree that is laid out as an installation; the
# target `growth` makes them all. What they are compiled from otherwise is compiled once.
set(PGMDEV_GROWTH_NAMES 10000 100000 1000000 CACHE STRING "Names in the catalogs that growth is measured with")
add_custom_target(growth DEPENDS threads_bench ddb_generator pgmdev_command databases)

# What the host is linked with, but for its own tables.
get_target_property(host_libraries pgmhost LINK_LIBRARIES)
list(REMOVE_ITEM host_libraries pgmhost_tables)

# add_growth(SIZE CATALOG): the target growth_SIZE, in build/bench/growth/SIZE.
function(add_growth size catalog)
  set(tree ${PROJECT_BINARY_DIR}/growth/${size})
  set(data ${tree}/pgmddb_data.cpp)
  set(tables ${tree}/dstr_tables.cpp)
  set(part_list ${tree}/share/tessary/h/pgm_parts.txt)
  add_custom_command(
    OUTPUT ${data} ${tables} ${part_list}
    COMMAND ddb_generator ${catalog} ${data} ${tables} ${part_list}
    DEPENDS ddb_generator ${catalog}/devices.txt
    COMMENT "Generating the tables of ${size} names"
    VERBATIM)

  add_library(pgmhost_${size} SHARED EXCLUDE_FROM_ALL $<TARGET_OBJECTS:pgmhost> ${tables})
  target_include_directories(pgmhost_${size} PRIVATE ${PROJECT_SOURCE_DIR}/host/h)
  target_link_libraries(pgmhost_${size} PRIVATE ${host_libraries})

  add_library(pgmddb_data_${size} OBJECT EXCLUDE_FROM_ALL ${data})
  target_include_directories(pgmddb_data_${size} PRIVATE
    ${PROJECT_SOURCE_DIR}/pgm/pgmdev ${PROJECT_SOURCE_DIR}/h ${PROJECT_SOURCE_DIR}/host/h)
  target_link_libraries(pgmddb_data_${size} PRIVATE pgmdev_tables pgmdev_compiler_settings)
  set_target_properties(pgmddb_data_${size} PROPERTIES POSITION_INDEPENDENT_CODE ON)

  add_library(pgmdev_${size} SHARED EXCLUDE_FROM_ALL $<TARGET_OBJECTS:pgmdev_objects> $<TARGET_OBJECTS:boot_flash_records>)
  target_link_libraries(pgmdev_${size} PRIVATE
    pgmhost_${size} pgmddb_data_${size} pgmdev_tables pgmdev_system pgmdev_compiler_settings)
  target_link_options(pgmdev_${size} PRIVATE -Wl,--version-script=${PROJECT_SOURCE_DIR}/pgm/pgmdev/pgmdev.map)
  foreach(library pgmhost pgmdev)
    set_target_properties(${library}_${size} PROPERTIES
      OUTPUT_NAME ${library}
      SOVERSION ${PROJECT_VERSION_MAJOR}
      LIBRARY_OUTPUT_DIRECTORY ${tree}/lib)
  endforeach()

  add_executable(growth_bench_${size} EXCLUDE_FROM_ALL
    growth_bench.cpp support/names.cpp $<TARGET_OBJECTS:pgmdev_objects> $<TARGET_OBJECTS:boot_flash_records>)
  target_include_directories(growth_bench_${size} PRIVATE
    ${CMAKE_CURRENT_SOURCE_DIR} ${PROJECT_SOURCE_DIR}/h ${PROJECT_SOURCE_DIR}/host/h ${PROJECT_SOURCE_DIR}/pgm/pgmdev)
  target_link_libraries(growth_bench_${size} PRIVATE
    pgmhost_${size} pgmddb_data_${size} pgmdev_tables benchmark::benchmark_main pgmdev_system pgmdev_compiler_settings)
  set_target_properties(growth_bench_${size} PROPERTIES OUTPUT_NAME growth_bench RUNTIME_OUTPUT_DIRECTORY ${tree}/bin)

  # The command is the same for all: it finds the libraries of its tree.
  add_custom_target(growth_${size}
    COMMAND ${CMAKE_COMMAND} -E copy $<TARGET_FILE:pgmdev_command> ${tree}/bin
    COMMAND ${CMAKE_COMMAND} -E copy_directory ${PGMDEV_DEVICES_DIR} ${tree}/share/tessary/devices
    DEPENDS growth_bench_${size} pgmdev_${size} pgmdev_command databases
    VERBATIM)
  add_dependencies(growth growth_${size})
endfunction()

add_growth(shipped ${PGMDEV_CATALOG_DIR})
foreach(names IN LISTS PGMDEV_GROWTH_NAMES)
  set(catalog ${PROJECT_BINARY_DIR}/growth/${names}/catalog)
  add_custom_command(
    OUTPUT ${catalog}/devices.txt
    COMMAND Python3::Interpreter ${CMAKE_CURRENT_SOURCE_DIR}/generate_catalog.py ${names} ${catalog}
    DEPENDS generate_catalog.py ${PROJECT_SOURCE_DIR}/data/catalog/devices.txt
    COMMENT "Making a catalog of ${names} names"
    VERBATIM)
  add_growth(${names} ${catalog})
endforeach()

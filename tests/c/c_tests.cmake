# The C interface, from C and compared with the classes that it stands for.
add_test_program(c_tests
  c/boot_flash_test.cpp
  c/enumerations_test.cpp
  c/exports_test.cpp
  c/failures_test.cpp
  c/flash_lists_test.cpp
  c/flash_test.cpp
  c/identification_test.cpp
  c/member_names_test.cpp
  c/messages_test.cpp
  c/names_test.cpp
  c/parameters_test.cpp
  c/parts_test.cpp
  c/profiles_test.cpp
  c/sfdp_test.cpp
  c/strict_c_test.cpp
  c/structures_test.cpp
  c/suggestions_test.cpp
  c/tables_test.cpp
  c/user_flash_test.cpp
  support/exports_${system}.cpp
  ${process_source})
# By itself, without what is only for C++.
add_library(strict_c OBJECT c/strict_c.c)
target_include_directories(strict_c PRIVATE ${CMAKE_CURRENT_SOURCE_DIR})
target_link_libraries(strict_c PRIVATE pgmdev_c)
compile_as_strict_c(strict_c)
target_link_libraries(c_tests PRIVATE pgmdev_c strict_c)
target_compile_definitions(c_tests PRIVATE
  TEST_C_LIBRARY="$<TARGET_FILE:pgmdev_c>"
  TEST_C_HEADERS="${PROJECT_SOURCE_DIR}/c/include"
  TEST_EXPORT_LIST="${CMAKE_CURRENT_SOURCE_DIR}/c/exported_functions.txt"
  TEST_SOVERSION="$<TARGET_PROPERTY:pgmdev_c,SOVERSION>")

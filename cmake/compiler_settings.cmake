# Warnings, sanitizers and position independence for everything that this project compiles itself.

add_library(pgmdev_compiler_settings INTERFACE)

target_compile_options(pgmdev_compiler_settings INTERFACE
  -Wall -Wextra -Wpedantic -Wconversion -Wsign-conversion -Wshadow -Wold-style-cast -Wcast-qual -Wformat=2
  -Wnon-virtual-dtor -Woverloaded-virtual -Wsuggest-override -Wundef -Wzero-as-null-pointer-constant
  # Reproducible builds: no path of the build machine in what is built. The last one that fits wins.
  -ffile-prefix-map=${PROJECT_SOURCE_DIR}=.
  -ffile-prefix-map=${PROJECT_BINARY_DIR}=build)

# GCC 12 warns of overlaps in its own std::string when it inlines operator+ (GCC bug 105651).
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
  target_compile_options(pgmdev_compiler_settings INTERFACE -Wno-restrict)
endif()

# By default, what must be unique in a process keeps the libraries that have it loaded to the end of the process.
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND NOT WIN32)
  target_compile_options(pgmdev_compiler_settings INTERFACE -fno-gnu-unique)
endif()

if(PGMDEV_WARNINGS_AS_ERRORS)
  target_compile_options(pgmdev_compiler_settings INTERFACE -Werror)
endif()

if(PGMDEV_BUILD_FUZZERS)
  add_compile_options(-fsanitize=fuzzer-no-link,address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
  add_link_options(-fsanitize=address,undefined)
elseif(PGMDEV_SANITIZE)
  add_compile_options(-fsanitize=${PGMDEV_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  add_link_options(-fsanitize=${PGMDEV_SANITIZE})
elseif(NOT WIN32)
  add_link_options(-Wl,--no-undefined)
endif()

# What is shipped is hardened: addresses fixed before the program runs and then read-only, no executable stack, programs
# that can be loaded anywhere; in optimised builds also stack protector, checked string functions and control-flow
# protection. On Windows these last would need libraries of the compiler's besides.
if(WIN32)
  add_link_options(-Wl,--dynamicbase,--nxcompat,--high-entropy-va)
else()
  add_link_options(-Wl,-z,relro -Wl,-z,now -Wl,-z,noexecstack)
  if(CMAKE_BUILD_TYPE MATCHES "Rel" AND NOT PGMDEV_SANITIZE AND NOT PGMDEV_BUILD_FUZZERS)
    set(CMAKE_POSITION_INDEPENDENT_CODE ON)
    include(CheckPIESupported)
    check_pie_supported(LANGUAGES CXX)
    add_compile_options(-fstack-protector-strong -U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=3)
    if(CMAKE_SYSTEM_PROCESSOR MATCHES "x86_64|AMD64")
      add_compile_options(-fcf-protection=full)
    endif()
  endif()
endif()

# The checks of the standard library itself, where tests look for faults.
if(PGMDEV_SANITIZE OR PGMDEV_BUILD_FUZZERS)
  add_compile_definitions(_GLIBCXX_ASSERTIONS)
endif()

if(MINGW)
  # Reproducible builds: no time of day in what is linked.
  add_link_options(-Wl,--no-insert-timestamp)
endif()

# compile_small(TARGET): for what passes questions and answers on. What takes time is in the library; most of what a short
# answer takes is loading the rest.
function(compile_small target)
  if(WIN32)
    target_compile_options(${target} PRIVATE $<$<CONFIG:Release>:-O1>)
  else()
    target_compile_options(${target} PRIVATE "$<$<CONFIG:Release>:-Os;-ffunction-sections;-fdata-sections>")
  endif()
endfunction()

# compile_quickly_with_sanitizers(TARGET): for what takes longer to be optimised, with their checks, than tests then gain.
function(compile_quickly_with_sanitizers target)
  if(PGMDEV_SANITIZE)
    target_compile_options(${target} PRIVATE -O0)
  endif()
endfunction()

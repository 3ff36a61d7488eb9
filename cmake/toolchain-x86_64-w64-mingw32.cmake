# Cross compiles for 64-bit Windows with Debian's mingw-w64, and runs what was built under Wine.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)

# The plain names stand for the win32 thread model, in which std::mutex and std::call_once do not exist.
set(CMAKE_C_COMPILER x86_64-w64-mingw32-gcc-posix)
set(CMAKE_CXX_COMPILER x86_64-w64-mingw32-g++-posix)
set(CMAKE_RC_COMPILER x86_64-w64-mingw32-windres)

# The libraries and headers of the build machine are not for this compiler.
set(CMAKE_FIND_ROOT_PATH /usr/x86_64-w64-mingw32)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

# Wine in a prefix of the build tree, without a display, without offers to install more of itself, and without menus
# in the home of the user. The locale lets file names have characters of every script. Debian does not put the loader on PATH.
find_program(PGMDEV_WINE NAMES wine64 wine64-stable wine PATHS /usr/lib/wine DOC "Runs Windows programs")
find_program(PGMDEV_WINE_SERVER NAMES wineserver wineserver64 PATHS /usr/lib/wine DOC "Serves what Wine runs")
if(PGMDEV_WINE)
  set(PGMDEV_WINE_PREFIX ${CMAKE_BINARY_DIR}/wine)
  set(wine_environment
    env -u DISPLAY -u WAYLAND_DISPLAY LC_ALL=C.UTF-8
    WINEPREFIX=${PGMDEV_WINE_PREFIX} WINEARCH=win64 WINEDEBUG=-all WINEDLLOVERRIDES=mscoree,mshtml,winemenubuilder.exe=)
  set(CMAKE_CROSSCOMPILING_EMULATOR ${wine_environment} ${PGMDEV_WINE})
  if(PGMDEV_WINE_SERVER)
    set(PGMDEV_EMULATOR_SERVER ${wine_environment} ${PGMDEV_WINE_SERVER})
  endif()
endif()

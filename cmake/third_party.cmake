# What of others is in our programs or comes with them: "name|Debian package|licence (SPDX)|relationship (SPDX)". Of
# libraries that are loaded, the name is that of the file.

set(PGMDEV_THIRD_PARTY
  "CLI11|libcli11-dev|BSD-3-Clause|STATIC_LINK"
  "fmt|libfmt-dev|MIT|STATIC_LINK"
  "RapidJSON|rapidjson-dev|MIT|STATIC_LINK")
if(PGMDEV_WITH_PYTHON)
  list(APPEND PGMDEV_THIRD_PARTY "pybind11|pybind11-dev|BSD-3-Clause|STATIC_LINK")
endif()
if(WIN32)
  list(APPEND PGMDEV_THIRD_PARTY
    "libgcc_s_seh-1.dll|gcc-mingw-w64-x86-64-posix-runtime|GPL-3.0-or-later WITH GCC-exception-3.1|CONTAINS"
    "libstdc++-6.dll|gcc-mingw-w64-x86-64-posix-runtime|GPL-3.0-or-later WITH GCC-exception-3.1|CONTAINS"
    "libwinpthread-1.dll|mingw-w64-x86-64-dev|MIT AND BSD-3-Clause|CONTAINS"
    "zlib1.dll|libz-mingw-w64|Zlib|CONTAINS")
else()
  list(APPEND PGMDEV_THIRD_PARTY "libz.so.1|zlib1g|Zlib|DYNAMIC_LINK")
  if(TARGET pgmhost)
    if(PGMHOST_LIBDEFLATE)
      list(APPEND PGMDEV_THIRD_PARTY "libdeflate.so.0|libdeflate0|MIT|DYNAMIC_LINK")
    endif()
    list(APPEND PGMDEV_THIRD_PARTY "libnettle.so.8|libnettle8|LGPL-3.0-or-later OR GPL-2.0-or-later|DYNAMIC_LINK")
  endif()
endif()

// Compiles, and that is all there is to it: every header, then the system's own. The other way round is tested in
// system_types_windows_test.cpp.

// clang-format off
#include "every_header.h"
#include <windows.h>
// clang-format on

static_assert(sizeof(DWORD) == sizeof(ULONG) && sizeof(QWORD) == sizeof(ULONGLONG));

#pragma once

/// \file
/// Types and values that all headers of the device-data library share: BYTE, WORD, DWORD and QWORD (see host_types.h),
/// and the number that stands for no index.

#include "host_types.h"

/// No index: not found, not mapped.
inline constexpr DWORD INVALID_DWORD = 0xFFFFFFFF;

#pragma once

/// \file
/// The unsigned integers that the host tool's interfaces are written in.
///
/// On Windows they are the system's own types, so that this header and <windows.h> live together in one source file.

#include <cstdint>

using BYTE = unsigned char;   ///< 8 bits
using WORD = unsigned short;  ///< 16 bits
#if defined(_WIN32)
using DWORD = unsigned long;  ///< 32 bits (long is 32 bits wide on Windows)
#else
using DWORD = std::uint32_t;  ///< 32 bits
#endif
using QWORD = std::uint64_t;  ///< 64 bits

static_assert(sizeof(BYTE) == 1 && sizeof(WORD) == 2 && sizeof(DWORD) == 4 && sizeof(QWORD) == 8);

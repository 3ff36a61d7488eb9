#pragma once

/// \file
/// The unsigned integers that the host tool's interfaces are written in.
///
/// On Windows they are the system's own types, so that this header and <windows.h> live together in one source file.

#include <cstdint>

typedef unsigned char BYTE;   ///< 8 bits
typedef unsigned short WORD;  ///< 16 bits
#if defined(_WIN32)
typedef unsigned long DWORD;  ///< 32 bits (long is 32 bits wide on Windows)
#else
typedef std::uint32_t DWORD;  ///< 32 bits
#endif
typedef std::uint64_t QWORD;  ///< 64 bits

static_assert(sizeof(BYTE) == 1 && sizeof(WORD) == 2 && sizeof(DWORD) == 4 && sizeof(QWORD) == 8);

#pragma once

#include <cstdint>

using BYTE = std::uint8_t;
using WORD = std::uint16_t;
using DWORD = std::uint32_t;
using QWORD = std::uint64_t;

/// For the classes whose objects are thrown from one library to another.
#if defined(_WIN32)
#define OWN_HOST_THROWN
#else
#define OWN_HOST_THROWN __attribute__((visibility("default")))
#endif

#pragma once

/// \file
/// Bytes of a response as people write them.

#include <string>
#include <string_view>

#include "pgmdev_types.h"

inline constexpr std::string_view UPPER_HEX_DIGITS = "0123456789ABCDEF";

/// Two digits in upper case.
inline std::string hex_byte(BYTE byte) {
    return {UPPER_HEX_DIGITS[byte >> 4], UPPER_HEX_DIGITS[byte & 0xF]};
}

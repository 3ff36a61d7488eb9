#pragma once

/// \file
/// Bytes that people write as pairs of hexadecimal digits.

#include <optional>
#include <string_view>
#include <vector>

#include "pgmdev_types.h"

inline constexpr std::string_view HEX_DIGITS = "0123456789ABCDEFabcdef";

/// The bytes that `text` spells: pairs of hexadecimal digits, which the characters `between` may set apart and "0x" may
/// precede. Nothing when there is anything else.
std::optional<std::vector<BYTE>> bytes_of_hex_pairs(std::string_view text, std::string_view between);

/// Likewise the bytes of an identification response, which blanks, ':' and '-' may set apart.
std::optional<std::vector<BYTE>> bytes_of_response(std::string_view text);

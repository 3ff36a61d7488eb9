#pragma once

/// \file
/// Texts of hexadecimal digits, as people copy them and as dump programs print them.

#include <optional>
#include <span>
#include <string_view>
#include <vector>

#include "pgmdev_types.h"

/// What the area begins with in which a flash describes itself (JESD216).
inline constexpr std::string_view SFDP_SIGNATURE = "SFDP";

/// Whether bytes begin with the signature of what a flash says of itself.
bool begins_as_sfdp(std::span<const BYTE> bytes);

/// The bytes of a line that has numbers of two bytes, the lowest first, behind an offset of seven digits, as `hexdump`
/// prints them without options, and `od -x`: "0000000 4653 5044". Nothing when it is no such line.
std::optional<std::vector<BYTE>> bytes_of_dump_words(std::string_view line);

/// The bytes of a text: pairs of hexadecimal digits, set apart by blanks, commas, ':', '-' or "0x" or not at all. Lines may
/// begin with an offset ("00000080:", or six digits and more before pairs), end in the bytes as characters, have numbers of
/// two bytes as above, and be "*", which repeats the line before up to the next offset. The lines tell whether offsets are
/// hexadecimal, octal as those of `od`, or decimal. A first line of numbers that begin with "SFDP" tells that all lines have
/// such, of two, four or eight bytes, the lowest or the highest first, behind offsets or not: "80000000: 50444653 ff010106".
/// Nothing when it is no such text, when lines are missing in it, or when it gives more than `most` bytes.
std::optional<std::vector<BYTE>> bytes_of_hex_text(std::string_view text, std::size_t most);

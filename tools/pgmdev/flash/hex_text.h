#pragma once

/// \file
/// Texts of hexadecimal digits, as people copy them and as dump programs print them.

#include <optional>
#include <string_view>
#include <vector>

#include "pgmdev_types.h"

/// The bytes of a line that has numbers of two bytes, the lowest first, behind an offset of seven digits, as `hexdump`
/// prints them without options, and `od -x`: "0000000 4653 5044". Nothing when it is no such line.
std::optional<std::vector<BYTE>> bytes_of_dump_words(std::string_view line);

/// The bytes of a text: pairs of hexadecimal digits, set apart by blanks, commas, ':', '-' or "0x" or not at all. Lines may
/// begin with an offset ("00000080:", or six digits and more before pairs), end in the bytes as characters, have numbers of
/// two bytes as above, and be "*", which repeats the line before up to the next offset. The lines tell whether offsets are
/// hexadecimal, octal as those of `od`, or decimal. Nothing when it is no such text, when lines are missing in it, or when
/// it gives more than `most` bytes.
std::optional<std::vector<BYTE>> bytes_of_hex_text(std::string_view text, std::size_t most);

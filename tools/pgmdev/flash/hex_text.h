#pragma once

/// \file
/// Texts of hexadecimal digits, as people copy them and as dump programs print them.

#include <optional>
#include <string_view>
#include <vector>

#include "pgmdev_types.h"

/// The bytes of a text: pairs of hexadecimal digits, set apart by blanks, commas, ':', '-' or "0x" or not at all. Lines may
/// begin with an offset ("00000080:", or six digits and more before pairs), end in the bytes as characters, and be "*",
/// which repeats the line before up to the next offset. Nothing when it is no such text, or gives more than `most` bytes.
std::optional<std::vector<BYTE>> bytes_of_hex_text(std::string_view text, std::size_t most);

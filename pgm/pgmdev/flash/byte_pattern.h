#pragma once

/// \file
/// What a byte of an identification may be: two digits in upper case, each of them a digit, "?" for any, or "[0-3]" for
/// one out of a range.

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "pgmdev_types.h"

/// The patterns that stand one behind the other in a text; nothing when it is no such text.
std::optional<std::vector<std::string>> byte_patterns_of(std::string_view text);

/// Whether the byte is one that the pattern allows.
bool fits_pattern(const std::string& pattern, BYTE byte);

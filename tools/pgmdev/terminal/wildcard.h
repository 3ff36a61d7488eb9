#pragma once

#include <string_view>

/// Whether the text fits the pattern, in any case: "*" stands for any characters or none, "?" for any one, and every
/// other character for itself.
bool fits_pattern(std::string_view text, std::string_view pattern);

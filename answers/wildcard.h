#pragma once

#include <string_view>

/// Whether the text fits the pattern, in any case of ASCII letters: "*" stands for any characters or none, "?" for any one,
/// and every other character for itself. A character is one of UTF-8: a byte, with all bytes 80 to BF that follow it.
bool fits_pattern(std::string_view text, std::string_view pattern);

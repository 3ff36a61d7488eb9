#pragma once

/// \file
/// Character classes that do not depend on a locale.

#include <string_view>

inline constexpr std::string_view ASCII_WHITE_SPACE = " \t\r\n\v\f";

constexpr char ascii_upper(char c) {
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

constexpr char ascii_lower(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

#pragma once

/// \file
/// Names written together.

#include <string>
#include <vector>

/// No pattern of a catalog stands for more names than this.
inline constexpr std::size_t MAX_PATTERN_NAMES = 1000;

/// Appends the names that a pattern stands for: "AB{,L}{1,2}" stands for AB1, AB2, ABL1, ABL2, the last alternatives
/// changing fastest. Returns what is wrong with the pattern, or "".
std::string expand_pattern(const std::string& pattern, std::vector<std::string>& names);

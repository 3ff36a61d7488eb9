#pragma once

/// \file
/// The names of temporary files: what they begin with, and a number.

#include <algorithm>
#include <cstdint>
#include <string>
#include <string_view>

inline constexpr std::string_view TEMPORARY_PREFIX = ".tessary-";

inline std::string temporary_name(std::uint64_t number) {
    return std::string(TEMPORARY_PREFIX) + std::to_string(number);
}

/// Whether it is such a name, of whatever characters. That of a lock, which begins alike, has no number.
template <class NAME>
bool is_temporary_name(const NAME& name) {
    const std::size_t number = TEMPORARY_PREFIX.size();
    return name.size() > number && std::equal(TEMPORARY_PREFIX.begin(), TEMPORARY_PREFIX.end(), name.begin()) &&
           name[number] >= '0' && name[number] <= '9';
}

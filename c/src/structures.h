#pragma once

/// \file
/// Structures of programs that are older or newer than the library: `struct_size` says how much of one is there.

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <type_traits>

#include "errors.h"

/// Beyond all that a later version may add. Who forgets to set a size mostly has a larger one, and whatever lies behind the
/// structure must not be read, or become 0.
inline constexpr std::size_t LARGEST_STRUCTURE = 4096;

/// Whether a structure of that size can be one: it has a member behind its size, and ends between two members.
template <class STRUCTURE>
bool is_size_of(std::size_t size) {
    static_assert(sizeof(STRUCTURE) <= LARGEST_STRUCTURE);
    return size >= sizeof(std::size_t) + alignof(STRUCTURE) && size <= LARGEST_STRUCTURE &&
           size % alignof(STRUCTURE) == 0;
}

/// What a program hands in. What it does not know is 0, and what the library does not know must be 0.
template <class STRUCTURE>
STRUCTURE handed_in(const STRUCTURE* given) {
    static_assert(std::is_trivially_copyable_v<STRUCTURE>);
    require_argument(given != nullptr, "a structure is a null pointer");
    const std::size_t size = given->struct_size;
    require_argument(is_size_of<STRUCTURE>(size), "struct_size is not that of the structure");
    const auto* bytes = reinterpret_cast<const unsigned char*>(given);
    for (std::size_t i = sizeof(STRUCTURE); i < size; ++i) {
        require_argument(bytes[i] == 0, "a structure says something that this version does not know");
    }
    STRUCTURE known{};
    std::memcpy(&known, given, std::min(size, sizeof known));
    return known;
}

/// Fills what a program has room for; what the library does not know becomes 0.
template <class STRUCTURE>
void hand_out(STRUCTURE* place, STRUCTURE value) {
    static_assert(std::is_trivially_copyable_v<STRUCTURE>);
    require_argument(place != nullptr, "there is nothing that could receive the result");
    const std::size_t size = place->struct_size;
    require_argument(is_size_of<STRUCTURE>(size), "struct_size is not that of the structure");
    value.struct_size = size;
    std::memcpy(place, &value, std::min(size, sizeof value));
    if (size > sizeof value) {
        std::memset(reinterpret_cast<unsigned char*>(place) + sizeof value, 0, size - sizeof value);
    }
}

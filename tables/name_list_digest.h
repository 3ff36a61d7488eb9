#pragma once

/// \file
/// What tells whether two lists of names are the same.

#include <cstdint>
#include <string_view>

#include "text_digest.h"

/// A digest of a list of names, in any case. It does not keep anybody from forging one, but no other list has it by chance.
/// Adding to it takes little more than reading the name.
struct NAME_LIST_DIGEST {
    std::uint64_t first = 0;
    std::uint64_t second = 0;

    void add(std::string_view name) {
        constexpr std::uint64_t FACTOR = 0xD6E8FEB86659FD93;  // odd, its bits well mixed, as those of the next one
        const std::uint64_t hash = text_digest(name, [](std::uint64_t word) { return upper_case(word); });
        first = (first ^ hash) * FACTOR;
        first ^= first >> 32;
        second = second * FACTOR + hash;
    }

    bool operator==(const NAME_LIST_DIGEST&) const = default;

private:
    static constexpr std::uint64_t IN_ALL_BYTES = 0x0101010101010101;

    /// The bytes of a word, those that are small letters in upper case.
    static constexpr std::uint64_t upper_case(std::uint64_t word) {
        constexpr std::uint64_t TOP_BITS = 0x80 * IN_ALL_BYTES;
        const std::uint64_t low_bits = word & ~TOP_BITS;
        const std::uint64_t from_a = low_bits + (0x80 - 'a') * IN_ALL_BYTES;
        const std::uint64_t behind_z = low_bits + (0x7F - 'z') * IN_ALL_BYTES;
        constexpr int TO_CASE_BIT = 2;
        return word ^ (from_a & ~behind_z & ~word & TOP_BITS) >> TO_CASE_BIT;
    }
};

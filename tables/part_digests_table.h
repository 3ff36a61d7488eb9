#pragma once

/// \file
/// Tables that find parts by digests of names. The build generates their definition from the catalog; all of it is
/// constant data that needs no start-up code.

#include <algorithm>
#include <cstdint>
#include <string_view>

#include "text_digest.h"

/// What is kept of the SHA-256 of a name: more than enough to take names with the same one for the same name.
struct NAME_DIGEST {
    std::uint64_t hash;   ///< the first 48 bits, the least significant byte first
    std::uint64_t check;  ///< the next 64 bits, likewise
};

constexpr NAME_DIGEST name_digest(const unsigned char* sha256) {
    constexpr int HASH_SIZE = 6;
    constexpr int SIZE = 14;
    NAME_DIGEST digest{0, 0};
    for (int i = 0; i < SIZE; ++i) {
        const std::uint64_t byte = sha256[i];
        (i < HASH_SIZE ? digest.hash : digest.check) |= byte << (8 * (i < HASH_SIZE ? i : i - HASH_SIZE));
    }
    return digest;
}

inline constexpr std::uint32_t SHA256_SIZE = 32;

/// A hash, and in the lowest bits the number of a part.
using HASHED_PART = std::uint64_t;
inline constexpr int HASHED_PART_NUMBER_BITS = 16;
inline constexpr int LARGEST_HASHED_PART = (1 << HASHED_PART_NUMBER_BITS) - 1;

constexpr HASHED_PART hashed_part(std::uint64_t hash, int part) {
    return hash << HASHED_PART_NUMBER_BITS | static_cast<std::uint64_t>(part);
}

constexpr int number_of_hashed_part(HASHED_PART entry) {
    return static_cast<int>(entry & LARGEST_HASHED_PART);
}

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

/// Names are in upper case. Entries ascend, so that of equal hashes the one of the first part comes first.
struct PART_DIGESTS {
    /// Of all part numbers from 1 on: the tables are about parts with these names and about no others.
    NAME_LIST_DIGEST all_names;
    int parts;  ///< how many numbers that are

    const HASHED_PART* names;  ///< an entry for every part
    std::uint32_t name_count;

    const HASHED_PART* denoting;  ///< an entry for every name that denotes a part, though it is not the part's
    const std::uint64_t* checks;  ///< beside these
    std::uint32_t denoting_count;
};

/// The entries with that hash.
struct HASHED_PARTS {
    const HASHED_PART* first;
    const HASHED_PART* last;

    const HASHED_PART* begin() const { return first; }
    const HASHED_PART* end() const { return last; }
};

inline HASHED_PARTS parts_with_hash(const HASHED_PART* table, std::uint32_t count, std::uint64_t hash) {
    const HASHED_PART* const first = std::lower_bound(table, table + count, hashed_part(hash, 0));
    const HASHED_PART* last = first;
    while (last != table + count && *last >> HASHED_PART_NUMBER_BITS == hash) {
        ++last;
    }
    return {first, last};
}

/// The part that is denoted by a name that is not its own; 0: none.
inline int denoted_part(const PART_DIGESTS& tables, const NAME_DIGEST& digest) {
    for (const HASHED_PART& entry : parts_with_hash(tables.denoting, tables.denoting_count, digest.hash)) {
        if (tables.checks[&entry - tables.denoting] == digest.check) {
            return number_of_hashed_part(entry);
        }
    }
    return 0;
}

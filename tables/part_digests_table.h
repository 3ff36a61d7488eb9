#pragma once

/// \file
/// Tables that find parts by digests of names. The build generates their definition from the catalog; all of it is
/// constant data that needs no start-up code.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "name_list_digest.h"

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

/// A hash, and in the lowest bits those of the number of a part.
using HASHED_PART = std::uint64_t;
inline constexpr int HASHED_PART_NUMBER_BITS = 16;
inline constexpr int LARGEST_HASHED_PART = (1 << HASHED_PART_NUMBER_BITS) - 1;

constexpr HASHED_PART hashed_part(std::uint64_t hash, int part) {
    return hash << HASHED_PART_NUMBER_BITS | static_cast<std::uint64_t>(part & LARGEST_HASHED_PART);
}

/// Parts by hashes of names. Hashes ascend; of equal ones the one of the first part comes first.
struct HASHED_PARTS {
    const HASHED_PART* entries;
    /// Beside these, the bits of the numbers that they have no room for; null: there are none.
    const std::uint16_t* higher;
    std::uint32_t count;

    int part_at(std::size_t place) const {
        const int part = static_cast<int>(entries[place] & LARGEST_HASHED_PART);
        return higher != nullptr ? part | higher[place] << HASHED_PART_NUMBER_BITS : part;
    }

    /// The first part with that hash for which `fits(place)`; 0: none.
    template <class FITS>
    int find(std::uint64_t hash, FITS fits) const {
        for (std::size_t place = first_place(hashed_part(hash, 0));
             place < count && entries[place] >> HASHED_PART_NUMBER_BITS == hash; ++place) {
            if (fits(place)) {
                return part_at(place);
            }
        }
        return 0;
    }

private:
    /// The place of the first entry that is not less. Hashes are spread evenly, so that it is near where it would be if they
    /// were so exactly: the search begins there, and so mostly stays in a page of memory.
    std::size_t first_place(HASHED_PART wanted) const {
        constexpr int HALF = 32;
        const auto likely = static_cast<std::size_t>((wanted >> HALF) * count >> HALF);
        std::size_t first = likely;
        std::size_t last = likely;
        for (std::size_t step = FIRST_STEP; first > 0 && entries[first - 1] >= wanted; step *= 2) {
            last = first - 1;
            first -= std::min(first, step);
        }
        for (std::size_t step = FIRST_STEP; last < count && entries[last] < wanted; step *= 2) {
            first = last + 1;
            last += std::min(count - last, step);
        }
        return static_cast<std::size_t>(std::lower_bound(entries + first, entries + last, wanted) - entries);
    }

    static constexpr std::size_t FIRST_STEP = 32;
};

/// Names are in upper case.
struct PART_DIGESTS {
    /// Of all part numbers from 1 on: the tables are about parts with these names and about no others.
    NAME_LIST_DIGEST all_names;
    int parts;  ///< how many numbers that are

    HASHED_PARTS names;           ///< an entry for every part
    HASHED_PARTS denoting;        ///< an entry for every name that denotes a part, though it is not the part's
    const std::uint64_t* checks;  ///< beside these
};

/// Whether two names begin with the same five characters. Only then does a package name or programming name denote a part
/// that is called otherwise.
inline bool share_part_prefix(std::string_view left, std::string_view right) {
    constexpr std::size_t PREFIX_SIZE = 5;
    return left.size() >= PREFIX_SIZE && right.size() >= PREFIX_SIZE &&
           left.substr(0, PREFIX_SIZE) == right.substr(0, PREFIX_SIZE);
}

/// The part that is denoted by a name that is not its own; 0: none.
inline int denoted_part(const PART_DIGESTS& tables, const NAME_DIGEST& digest) {
    return tables.denoting.find(digest.hash, [&](std::size_t place) { return tables.checks[place] == digest.check; });
}

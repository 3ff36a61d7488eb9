#pragma once

/// \file
/// A sorted table from numbers to numbers.

#include <algorithm>
#include <array>
#include <numeric>
#include <utility>
#include <vector>

#include "pgmdev_types.h"

/// Finds the first number that stands beside another.
class NUMBER_INDEX {
public:
    using PAIR = std::pair<QWORD, DWORD>;

    /// Of equal keys, the one that comes first counts.
    explicit NUMBER_INDEX(std::vector<PAIR> pairs) : m_pairs(std::move(pairs)) { sort_by_bytes(); }

    /// The number beside `key`, or null.
    const DWORD* find(QWORD key) const {
        const auto found = std::lower_bound(m_pairs.begin(), m_pairs.end(), PAIR{key, 0}, comes_before);
        return found != m_pairs.end() && found->first == key ? &found->second : nullptr;
    }

private:
    static bool comes_before(const PAIR& left, const PAIR& right) { return left.first < right.first; }

    /// Sorts by one byte of the keys after the other, the lowest first, and keeps the order of those with the same byte. What
    /// that takes grows as the pairs do; comparing them would take a logarithm more.
    void sort_by_bytes() {
        constexpr int BYTE_BITS = 8;
        QWORD largest = 0;
        for (const PAIR& pair : m_pairs) {
            largest = std::max(largest, pair.first);
        }
        std::vector<PAIR> sorted(m_pairs.size());
        for (int shift = 0; shift < static_cast<int>(sizeof(QWORD)) * BYTE_BITS && largest >> shift != 0;
             shift += BYTE_BITS) {
            const auto byte_of = [shift](const PAIR& pair) { return static_cast<BYTE>(pair.first >> shift); };
            std::array<std::size_t, 1 << BYTE_BITS> places{};
            for (const PAIR& pair : m_pairs) {
                ++places[byte_of(pair)];
            }
            std::exclusive_scan(places.begin(), places.end(), places.begin(), std::size_t{0});
            for (const PAIR& pair : m_pairs) {
                sorted[places[byte_of(pair)]++] = pair;
            }
            m_pairs.swap(sorted);
        }
    }

    std::vector<PAIR> m_pairs;
};

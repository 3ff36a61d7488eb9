#pragma once

/// \file
/// A sorted table from numbers to numbers.

#include <algorithm>
#include <utility>
#include <vector>

#include "pgmdev_types.h"

/// Finds the first number that stands beside another.
class NUMBER_INDEX {
public:
    using PAIR = std::pair<QWORD, DWORD>;

    /// Of equal keys, the one that comes first counts.
    explicit NUMBER_INDEX(std::vector<PAIR> pairs) : m_pairs(std::move(pairs)) {
        std::stable_sort(m_pairs.begin(), m_pairs.end(), comes_before);
    }

    /// The number beside `key`, or null.
    const DWORD* find(QWORD key) const {
        const auto found = std::lower_bound(m_pairs.begin(), m_pairs.end(), PAIR{key, 0}, comes_before);
        return found != m_pairs.end() && found->first == key ? &found->second : nullptr;
    }

private:
    static bool comes_before(const PAIR& left, const PAIR& right) { return left.first < right.first; }

    std::vector<PAIR> m_pairs;
};

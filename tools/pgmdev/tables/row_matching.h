#pragma once

/// \file
/// Which rows of two tables belong together, in a time that hardly grows faster than the tables.

#include <string>
#include <utility>
#include <vector>

/// What a row is matched by.
struct ROW_TEXTS {
    std::string key;
    std::string whole;  ///< all its values
};

struct ROW_MATCHES {
    std::vector<std::pair<std::size_t, std::size_t>> pairs;  ///< ascending by the row of the first table
    std::vector<bool> moved;           ///< for each pair: whether it stands elsewhere among the others
    std::vector<std::size_t> removed;  ///< rows of the first table without a partner
    std::vector<std::size_t> added;    ///< rows of the second table without a partner
};

/// Rows that are the same belong together, then rows of the same key, in their order. As few pairs as possible count as
/// moved: the others keep their order.
ROW_MATCHES match_rows(const std::vector<ROW_TEXTS>& before, const std::vector<ROW_TEXTS>& after);

#pragma once

/// \file
/// The tables that find parts by digests of names, in memory.

#include <cstdint>
#include <vector>

#include "catalog.h"
#include "part_digests_table.h"

/// The numbers of parts by hashes of names.
struct HASHED_NUMBERS {
    std::vector<HASHED_PART> entries;
    std::vector<std::uint16_t> higher;  ///< none when the numbers of all parts fit without

    HASHED_PARTS table() const;
};

struct DIGEST_TABLES {
    NAME_LIST_DIGEST all_names;
    int parts = 0;
    HASHED_NUMBERS names;
    HASHED_NUMBERS denoting;
    std::vector<std::uint64_t> checks;

    PART_DIGESTS table() const;
};

/// Builds the tables and looks up every name in them; throws std::runtime_error when one is not found.
DIGEST_TABLES build_digest_tables(const CATALOG& catalog);

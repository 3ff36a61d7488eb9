#pragma once

/// \file
/// The tables that find parts by digests of names, in memory.

#include <cstdint>
#include <vector>

#include "catalog.h"
#include "grammar.h"
#include "part_digests_table.h"

struct DIGEST_TABLES {
    NAME_LIST_DIGEST all_names;
    int parts = 0;
    std::vector<HASHED_PART> names;
    std::vector<HASHED_PART> denoting;
    std::vector<std::uint64_t> checks;

    PART_DIGESTS table() const;
};

/// Builds the tables and looks up every name in them; throws std::runtime_error when one is not found. A catalog with
/// more parts than their entries can number has none: its parts are found as those of a host with other parts are.
DIGEST_TABLES build_digest_tables(const CATALOG& catalog, const GRAMMAR& grammar);

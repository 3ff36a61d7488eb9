#pragma once

/// \file
/// How large a table is, for people and for programs.

#include <fmt/core.h>

#include <vector>

#include "terminal/json.h"
#include "terminal/schema.h"

template <class TABLE>
JSON sizes_json(const TABLE& table) {
    return {{"records", table.records().size()}, {"payload_size", table.payload_size()}};
}

/// The members of sizes_json.
inline std::vector<SCHEMA_MEMBER> size_members() {
    return {{"records", number_schema()}, {"payload_size", number_schema()}};
}

template <class TABLE>
void print_sizes(const TABLE& table) {
    fmt::print("{} records, {} bytes of payload\n", table.records().size(), table.payload_size());
}

#pragma once

/// \file
/// How large a table is, for people and for programs.

#include <fmt/core.h>

#include "terminal/json.h"

template <class TABLE>
JSON sizes_json(const TABLE& table) {
    return {{"records", table.records().size()}, {"payload_size", table.payload_size()}};
}

template <class TABLE>
void print_sizes(const TABLE& table) {
    fmt::print("{} records, {} bytes of payload\n", table.records().size(), table.payload_size());
}

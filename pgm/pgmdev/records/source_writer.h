#pragma once

/// \file
/// Records as a source table that compiles to them.

#include <string>
#include <variant>
#include <vector>

#include "records/codec.h"
#include "source/header.h"

/// Lines of cells.
using SOURCE_CELLS = std::vector<std::vector<std::string>>;

/// The type row and the name row.
SOURCE_CELLS source_header_cells(const SOURCE_HEADER& header);

/// A line of cells between commas.
std::string source_row_text(const std::vector<std::string>& cells);

/// Appends a row for each record. `spell(member, record, cell)` makes a cell, and tells whether the compiler would read
/// it back as that; false, with the `obstacle` in words, at the first one of which it would not.
template <class RECORD, class SPELL>
bool append_rows(SOURCE_CELLS& rows, const std::vector<RECORD>& records, SPELL spell, std::string& obstacle) {
    for (std::size_t i = 0; i < records.size(); ++i) {
        std::vector<std::string>& row = rows.emplace_back();
        for (const auto& member : RECORD_SCHEMA<RECORD>::MEMBERS) {
            if (!spell(member, records[i], row.emplace_back())) {
                obstacle = "record " + std::to_string(i) + ": " + std::string(member.name) + " \"" + row.back() +
                           "\" cannot be a cell of a source table";
                return false;
            }
        }
    }
    return true;
}

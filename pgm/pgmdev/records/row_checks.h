#pragma once

/// \file
/// Looking at the sound rows of a source table as rows: a fault that stands in a cell, and checks of one row by itself.

#include <string>
#include <string_view>
#include <vector>

#include "records/codec.h"
#include "source/faults.h"
#include "source/header.h"
#include "source/table.h"

/// Where a member stands among the cells of a row. A name that is none does not compile.
template <class RECORD>
consteval std::size_t cell_of(std::string_view member) {
    const auto& members = RECORD_SCHEMA<RECORD>::MEMBERS;
    std::size_t place = 0;
    while (members.at(place).name != member) {
        ++place;
    }
    return place;
}

/// A fault, or something remarkable, in a cell of a row.
template <class TABLE>
PGMDEV_TABLE_FAULT row_fault(const SOURCE_LINE& line, PGMDEV_TABLE_FAULT::SEVERITY severity, std::size_t cell,
                             std::string expected) {
    PGMDEV_TABLE_FAULT fault = cell_fault(line, cell, TABLE::HEADER.columns[cell].name, "", std::move(expected));
    fault.severity = severity;
    fault.row = TABLE::row_name(line);
    return fault;
}

/// Whether a text is a number of volts: "3.3V".
inline bool is_voltage(std::string_view text) {
    return text.size() > 1 && text.find_first_not_of("0123456789.") + 1 == text.size() && text.ends_with('V');
}

/// A check of one row by itself: something is to be said about the cell when `broken`.
template <class RECORD>
struct ROW_CHECK {
    PGMDEV_TABLE_FAULT::SEVERITY severity;
    std::size_t cell;
    bool (*broken)(const RECORD&);
    const char* expected;
};

template <class TABLE, class CHECKS>
void check_row(const SOURCE_LINE& line, const typename TABLE::RECORD& record, const CHECKS& checks,
               const FAULT_SINK& sink) {
    for (const ROW_CHECK<typename TABLE::RECORD>& check : checks) {
        if (check.broken(record)) {
            sink(row_fault<TABLE>(line, check.severity, check.cell, check.expected), PGMDEV_LINE);
        }
    }
}

#pragma once

/// \file
/// What can be wrong with a source table, for the people who maintain it.

#include <string>

#include "pgmdev_types.h"

/// Something wrong, or remarkable, in a source table.
struct PGMDEV_TABLE_FAULT {
    enum class SEVERITY {
        FAULT,   ///< the table cannot be compiled, or its database would not work
        WARNING  ///< it works, but is probably not what was meant
    };

    SEVERITY severity = SEVERITY::FAULT;
    DWORD line = 0;      ///< line of the file, from 1; 0: the table as a whole
    DWORD column = 0;    ///< first character of the cell in its line, from 1; 0: the line as a whole
    std::string row;     ///< what the row is about (its device name, its key); empty outside the data rows; see `cell`
    std::string member;  ///< member that the cell belongs to; empty: the line as a whole
    std::string cell;    ///< text of the cell; in a source table at most 1,000 bytes of it, and then "..."
    std::string condition;  ///< internal error that compiling or loading reports for it; empty when neither does
    std::string expected;   ///< what would be accepted, or what is remarkable: a sentence for the table's maintainer
};

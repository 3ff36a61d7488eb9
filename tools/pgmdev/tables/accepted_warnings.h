#pragma once

/// \file
/// Warnings about a source table that its maintainers have looked at and accept: a file beside the table, TABLE.accepted,
/// of lines "ROW MEMBER TEXT # WHY". ROW and MEMBER are as in the warning, "-" where it has none, in quotation marks when
/// they hold blanks. TEXT is what the warning says, "*" whatever it says. Lines without anything before a # are comments.

#include <map>
#include <string>
#include <utility>
#include <vector>

#include "pgmdev_table_fault.h"
#include "terminal/json.h"

struct ACCEPTED_WARNING {
    std::size_t line = 0;  ///< of the file, from 1
    std::string row;
    std::string member;
    std::string text;
    std::string why;
    bool used = false;
};

struct ACCEPTED_WARNINGS {
    std::string file;                       ///< "" when there is none
    std::vector<ACCEPTED_WARNING> entries;  ///< in file order
    std::vector<std::size_t> malformed;     ///< lines that are none

    using PLACES = std::vector<std::size_t>;
    std::map<std::pair<std::string, std::string>, PLACES> by_row_and_member;  ///< places among the entries
};

/// Reads the file beside the table. There need not be one.
ACCEPTED_WARNINGS read_accepted_warnings(const std::string& csv_file);

/// Whether the fault is a warning that is accepted: by the first such entry, which counts as used from then on.
const ACCEPTED_WARNING* accept_warning(ACCEPTED_WARNINGS& accepted, const PGMDEV_TABLE_FAULT& fault);

/// Entries that no warning has used.
std::vector<ACCEPTED_WARNING> unused_entries(const ACCEPTED_WARNINGS& accepted);

/// As an array of objects.
JSON unused_json(const std::vector<ACCEPTED_WARNING>& entries);

JSON unused_schema();

/// A line for each malformed line and each unused entry, on standard error.
void print_leftovers(const ACCEPTED_WARNINGS& accepted, const std::vector<ACCEPTED_WARNING>& unused);

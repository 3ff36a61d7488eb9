#pragma once

/// \file
/// What supports the rows of a source table, where a list of that stands beside it.

#include <string>
#include <vector>

#include "pgmdev_table_fault.h"
#include "terminal/json.h"

struct TABLE_SUPPORT {
    bool is_there = false;                   ///< whether there is such a list
    std::vector<PGMDEV_TABLE_FAULT> faults;  ///< rows without a line, and what is wrong with the list
    JSON shares = JSON::object();            ///< for each group of members how many rows have which class of evidence
    std::vector<std::string> lines;          ///< the same for people
};

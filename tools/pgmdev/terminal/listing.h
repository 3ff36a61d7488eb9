#pragma once

/// \file
/// Answers that are lists of objects, shown in one way by all verbs: to people as a table, to programs as a JSON array
/// or as CSV (RFC 4180, header first), of all fields or of those that were chosen.

#include <vector>

#include "terminal/command_line.h"
#include "terminal/json.h"
#include "terminal/text_table.h"

/// The verb with the options and the schema of a list: --csv and --fields. `row` gives the schema of its rows, made by
/// object_schema, with all members that any option of the verb brings about.
VERB with_list_options(VERB verb, JSON (*row)());

/// The same, for a verb that has another meaning for --csv.
VERB with_field_option(VERB verb, JSON (*row)());

/// Shows the rows, objects of the schema `row`, as the user wants to see them. `table` is what
/// people see who choose no fields. A field that rows do not have throws USAGE_ERROR, which names similar ones.
void print_listing(const JSON& row, const std::vector<JSON>& rows, const TEXT_TABLE& table, const ARGUMENTS& given,
                   const COMMAND& command);

/// The rows with only the fields that --fields names, in its order; all when it is not given.
std::vector<JSON> chosen_fields(const JSON& row, const std::vector<JSON>& rows, const ARGUMENTS& given);

#pragma once

/// \file
/// The options that filter lists of parts, and of what parts belong to.

#include <string>
#include <vector>

#include "names/part_entries.h"
#include "terminal/command_line.h"

/// The verb with a pattern for names, and the options of the filters.
VERB with_part_filters(VERB verb);

PART_FILTER part_filter(const ARGUMENTS& given);

/// Whether the name fits the pattern, if one is given.
bool fits_given_pattern(const std::string& name, const ARGUMENTS& given);

/// Says that nothing is in a list of `things`, and which of the filters no part passes even by itself.
void report_empty_list(const std::string& things, const ARGUMENTS& given, COMMAND& command);

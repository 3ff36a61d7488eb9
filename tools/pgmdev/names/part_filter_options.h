#pragma once

/// \file
/// The options that filter lists of parts, and of what parts belong to.

#include <string>
#include <vector>

#include "names/part_entries.h"
#include "terminal/command_line.h"

/// The verb with the options of the filters.
VERB with_part_filters(VERB verb);

PART_FILTER part_filter(const ARGUMENTS& given);

/// Why nothing is in a list of things: which of the filters no part passes even by itself.
std::string empty_list_text(const std::string& thing, const ARGUMENTS& given);

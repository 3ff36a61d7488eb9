#pragma once

#include <vector>

#include "terminal/command_line.h"
#include "terminal/json.h"

/// `part info`: everything about a part, or about whatever else a name stands for.
VERB part_info_verb();

/// What it answers of every name of every scheme, those of parts first. Left out are the hash, which follows from the name,
/// and the parts: they are those that have the name as one of their spellings.
std::vector<JSON> facts_of_all_names();

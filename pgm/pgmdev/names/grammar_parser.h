#pragma once

/// \file
/// Reading the body of the grammar, with every check of it.

#include <array>

#include "grammar_index.h"
#include "names/grammar.h"

using ALL_GRAMMAR_PLACES = std::array<GRAMMAR_PLACES, static_cast<std::size_t>(PGMDEV_DDB_GRAMMAR_ENUM::MAX)>;

/// Where the texts of all tables are. Of an entry that several keys have, the first key in byte-wise order counts. What is
/// wrong with the body is reported.
ALL_GRAMMAR_PLACES parse_grammar(const DATA_CONTAINER& container);

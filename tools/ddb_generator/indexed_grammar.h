#pragma once

/// \file
/// The index of the compiled-in grammar.

#include "data_set.h"
#include "grammar_index.h"

/// The index of a grammar that has that body. Every key and every entry has been found by it, with what belongs to it;
/// otherwise it throws std::runtime_error.
INDEX_NUMBERS proven_index(const GRAMMAR& grammar, const BYTES& body);

#pragma once

/// \file
/// The index of the compiled-in grammar.

#include <string>

#include "data_set.h"
#include "grammar_index.h"

struct INDEXED_GRAMMAR {
    std::string text;  ///< as it is unpacked, without the CRC: places of texts count from its beginning
    INDEX_NUMBERS index;
};

/// The index of a grammar that has that body. Every key and every entry has been found by it, with what belongs to it;
/// otherwise it throws std::runtime_error.
INDEXED_GRAMMAR proven_index(const GRAMMAR& grammar, const BYTES& body);

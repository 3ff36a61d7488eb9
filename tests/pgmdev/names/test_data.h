#pragma once

/// \file
/// The data compiled into the library, as variables: these test programs link the library's own objects with data that
/// they set themselves.

#include <cstddef>
#include <string>

#include "part_digests_table.h"

/// Largest zlib stream that a test may set.
inline constexpr std::size_t TEST_DATA_CAPACITY = 1 << 16;

/// Makes the containers the data sets of this build and forgets stores that were built from others.
void set_grammar_container(const std::string& container);
void set_opn_container(const std::string& container);

/// Likewise the tables of digests, which are not copied. From the beginning they are about no parts.
void set_part_digests(const PART_DIGESTS& digests);

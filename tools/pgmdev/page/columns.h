#pragma once

/// \file
/// Lists of objects that all have the same members, written column by column: much shorter, and read as quickly.

#include <string>
#include <vector>

#include "terminal/json.h"

/// {"rows": how many, "columns": [{"name", and the values in the shortest of these ways}]}:
///   "plain"   the values
///   "front"   texts, of which each begins with some characters of the one before: behind each line feed a digit of base
///             36 says how many, and the others follow
///   "steps"   another column, of nulls and of the differences of each number from the last one before it; those are even
///             and twice as large, or odd and negative
///   "values"  another column, of the different values; with
///     "digits"  for each row the place of its value, in `width` digits of base 64
///     "runs"    or places, each with the number of rows that follow each other with it
JSON in_columns(const std::vector<JSON>& rows);

#pragma once

/// \file
/// Misspelt nouns and verbs.

#include <string>
#include <vector>

#include "terminal/command_line.h"

/// The first word among the arguments that stands where a noun, group or verb must and is none, with those that may have
/// been meant: a sentence for people; "" when there is none.
std::string unknown_word(const COMMAND_TABLE& table, const std::vector<std::string>& arguments);

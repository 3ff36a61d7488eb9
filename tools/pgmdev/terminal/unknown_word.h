#pragma once

/// \file
/// Misspelt nouns, verbs and options.

#include <string>
#include <vector>

#include "terminal/command_line.h"

/// The first word among the arguments that stands where a noun, group or verb must and is none, with those that may have
/// been meant: a sentence for people; "" when there is none.
std::string unknown_word(const COMMAND_TABLE& table, const std::vector<std::string>& arguments);

/// The first option among the arguments that neither the command nor the verb that they lead to has, likewise.
std::string unknown_option(const COMMAND_TABLE& table, const std::vector<std::string>& arguments);

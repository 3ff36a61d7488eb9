#pragma once

/// \file
/// Nouns, verbs and options that are misspelt, missing, or given too often.

#include <string>
#include <vector>

#include "terminal/command_line.h"

/// The first word among the arguments that stands where a noun, group or verb must and is none, with those that may have
/// been meant: a sentence for people; "" when there is none.
std::string unknown_word(const COMMAND_TABLE& table, const std::vector<std::string>& arguments);

/// The first option among the arguments that neither the command nor the verb that they lead to has, likewise.
std::string unknown_option(const COMMAND_TABLE& table, const std::vector<std::string>& arguments);

/// The first option that may be given once and is given more than once, likewise.
std::string repeated_option(const COMMAND_TABLE& table, const std::vector<std::string>& arguments);

/// Where the arguments end before a verb, or before the value of an option: what may stand there.
std::string missing_word(const COMMAND_TABLE& table, const std::vector<std::string>& arguments);

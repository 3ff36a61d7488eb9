#pragma once

/// \file
/// Completion of command lines: what may stand in the place of the word that a user is typing.

#include "terminal/command_line.h"

/// Prints a line for each word that may stand in place of the last of `words` (those behind the command's name): the
/// word, and behind a tab what it means, where that is known. Nothing is printed where names of files belong.
void print_completions(const COMMAND_TABLE& table, const std::vector<std::string>& words);

#pragma once

/// \file
/// Manual pages, made from the texts of the help.

#include "terminal/command_line.h"

/// Prints the page of the noun that `words` names, in the language of man; of the whole command when there is no word.
/// A noun that does not exist throws USAGE_ERROR.
void print_man_page(const COMMAND_TABLE& table, const std::vector<std::string>& words);

#pragma once

/// \file
/// Arguments that the parser would take for others than they are.

#include <string>
#include <vector>

#include "terminal/command_line.h"

/// The same arguments, written as the parser understands them: behind "--option=" it would take the next argument for the
/// value, and behind "--" options for options where another text stands before.
std::vector<std::string> plain_arguments(const COMMAND_TABLE& table, const std::vector<std::string>& arguments);

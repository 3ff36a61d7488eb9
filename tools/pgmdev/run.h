#pragma once

/// \file
/// The command as an operation, for its program and its tests.

#include <string>
#include <vector>

/// Runs with the arguments of a command line, without the program's name, on the standard streams, and returns the exit
/// code. Nothing that it sets outlives it.
int run_pgmdev(const std::vector<std::string>& arguments);

#pragma once

/// \file
/// The generator as an operation, for its program and its tests.

#include <iosfwd>
#include <string>
#include <vector>

inline constexpr int GENERATOR_DONE = 0;
inline constexpr int GENERATOR_FAULTS = 1;
inline constexpr int GENERATOR_WRONG_USAGE = 2;
inline constexpr int GENERATOR_FAILED = 3;

/// Runs with the arguments of a command line, without the program's name, and returns the exit code. Nothing is written
/// unless what it reads is without fault.
int run_generator(const std::vector<std::string>& arguments, std::ostream& output, std::ostream& errors);

#pragma once

/// \file
/// Operations of this process that speak as programs do: everything they write to the standard streams.

#include <functional>
#include <string>

#include "process.h"

/// Runs the operation, which gives an exit code, with `input` as standard input (std::cin). It sees the directory of
/// the tests and their environment, but for TESSARY_CONFIG_FILE, as a process does (process.h).
PROCESS_RESULT run_captured(const std::function<int()>& operation, const std::string& input);

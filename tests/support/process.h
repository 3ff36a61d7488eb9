#pragma once

/// \file
/// Programs as processes: run to their end, with everything they wrote.

#include <filesystem>
#include <map>
#include <string>
#include <vector>

/// A program to run. It sees the environment of the tests without any setting of ours, plus `environment`.
struct PROCESS {
    std::vector<std::string> command;                ///< the program's path, then its arguments
    std::string input;                               ///< what it reads from standard input
    std::map<std::string, std::string> environment;  ///< variables added or replaced
    std::filesystem::path directory;                 ///< where it runs; empty: where the tests run
};

struct PROCESS_RESULT {
    int exit_code = 0;   ///< minus the number of the signal that ended it, if one did
    std::string output;  ///< standard output
    std::string errors;  ///< standard error
};

/// What a program exits with that a sanitizer has stopped: no exit code of our own.
inline constexpr int SANITIZER_EXIT_CODE = 99;

/// Runs the program and waits for it. A program that cannot be started throws std::runtime_error.
PROCESS_RESULT run_process(const PROCESS& process);

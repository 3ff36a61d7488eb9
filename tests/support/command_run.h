#pragma once

/// \file
/// The command, run as a program of its own.

#include <cstdlib>
#include <string>
#include <vector>

#include "support/scratch.h"

#if !defined(_WIN32)
#include <sys/wait.h>
#endif

/// What one run of the command left.
struct COMMAND_RUN {
    int exit_code = -1;
    std::string output;
    std::string errors;
};

/// Runs the command with arguments that hold no quotation marks.
inline COMMAND_RUN run_command(const std::vector<std::string>& arguments, const std::string& input = "") {
    const SCRATCH scratch;
    std::string line = "\"" TEST_COMMAND "\"";
    for (const std::string& argument : arguments) {
        line += " \"" + argument + "\"";
    }
    line += " <\"" + scratch.write("input", input) + "\" >\"" + scratch.path("output") + "\" 2>\"" +
            scratch.path("errors") + "\"";
    COMMAND_RUN run;
#if defined(_WIN32)
    run.exit_code = std::system(("\"" + line + "\"").c_str());
#else
    const int status = std::system(line.c_str());
    run.exit_code = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
#endif
    run.output = read_file(scratch.path("output"));
    run.errors = read_file(scratch.path("errors"));
    return run;
}

#pragma once

/// \file
/// What help says: verbs and examples.

#include <string>
#include <vector>

#include "tools/command_fixture.h"

inline std::string help_of(std::vector<std::string> path) {
    path.emplace_back("--help");
    const PROCESS_RESULT result = run_command(path);
    EXPECT_EQ(result.exit_code, DONE);
    EXPECT_EQ(result.errors, "");
    return result.output;
}

/// The subcommands that a help text lists.
inline std::vector<std::string> subcommands(const std::string& help) {
    std::vector<std::string> names;
    bool listing = false;
    for (const std::string& line : lines_of(help)) {
        if (line == "Subcommands:") {
            listing = true;
        } else if (line.empty()) {
            listing = false;
        } else if (listing && line.starts_with("  ") && line[2] != ' ') {
            names.push_back(line.substr(2, line.find(' ', 2) - 2));
        }
    }
    return names;
}

/// The command lines of the examples, without the command itself.
inline std::vector<std::string> examples(const std::string& help) {
    const std::string mark = "Example: pgmdev ";
    std::vector<std::string> found;
    for (const std::string& line : lines_of(help)) {
        if (line.starts_with(mark)) {
            found.push_back(line.substr(mark.size()));
        }
    }
    return found;
}

/// Splits a command line as a shell does, as far as the examples need it.
inline std::vector<std::string> arguments_of(const std::string& line) {
    std::vector<std::string> arguments;
    bool quoted = false;
    bool open = false;
    for (const char c : line) {
        if (c == '"') {
            quoted = !quoted;
        } else if (c == ' ' && !quoted) {
            open = false;
        } else {
            if (!open) {
                arguments.emplace_back();
                open = true;
            }
            arguments.back() += c;
        }
    }
    return arguments;
}

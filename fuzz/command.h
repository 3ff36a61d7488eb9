#pragma once

/// \file
/// The command as a fuzzer runs it: what it reads and writes is in the scratch directory, or comes with the build.

#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <sstream>
#include <string>
#include <vector>

#include "run.h"
#include "scratch_files.h"

/// The directory in which the command runs. The one above it is a fuzzer's own, too: for "..".
inline std::string working_directory() {
    static const std::string directory = [] {
        std::string inner = scratch_files().path("inner");
        std::filesystem::create_directories(inner);
        ::setenv("TESSARY_SYSTEM_ROOT", scratch_files().path("none").c_str(), 1);
        ::setenv("XDG_CONFIG_HOME", scratch_files().path("none").c_str(), 1);
        ::setenv("XDG_STATE_HOME", scratch_files().path("none").c_str(), 1);
        ::setenv("TESSARY_OUTBOX_DIR", inner.c_str(), 1);
        ::setenv("TESSARY_CONFIG_FILE", (inner + "/tessary.conf").c_str(), 1);
        ::setenv("TMPDIR", scratch_files().directory().c_str(), 1);
        return inner;
    }();
    return directory;
}

inline void enter_working_directory() {
    if (::chdir(working_directory().c_str()) != 0) {
        std::abort();
    }
}

/// Runs it in that directory with the small installation. Anything may come of it but a crash; exit codes have meanings.
inline void run_command(std::vector<std::string> arguments, const std::string& input) {
    enter_working_directory();
    arguments.insert(arguments.begin(), {"--db-dir", FUZZ_DEVICES_DIR, "--module-dir", working_directory(),
                                         "--install-dir", FUZZ_INSTALLATION_DIR});
    std::istringstream typed(input);
    std::streambuf* const former = std::cin.rdbuf(typed.rdbuf());
    std::cin.clear();
    const int result = run_pgmdev(arguments);
    std::cin.rdbuf(former);
    if (result < 0 || result > 3) {
        __builtin_trap();
    }
}

#pragma once

/// \file
/// Runs the program of host_probe.cpp.

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

#include "support/process.h"

inline PROCESS_RESULT run_host_probe(const std::vector<std::string>& operations,
                                     const std::map<std::string, std::string>& environment = {},
                                     const std::string& program = TEST_HOST_PROBE) {
    PROCESS process{{program}, "", environment, {}};
    process.command.insert(process.command.end(), operations.begin(), operations.end());
    return run_process(process);
}

/// What the probe answers, a line for each operation that has an answer.
inline std::string host_answers(const std::vector<std::string>& operations,
                                const std::map<std::string, std::string>& environment = {},
                                const std::string& program = TEST_HOST_PROBE) {
    const PROCESS_RESULT result = run_host_probe(operations, environment, program);
    EXPECT_EQ(result.exit_code, 0) << result.errors;
    return result.output;
}

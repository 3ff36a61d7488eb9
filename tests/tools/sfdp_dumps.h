#pragma once

#include "command_fixture.h"

// Dumps of what real chips say of themselves, and what the command answers to them.

inline const std::string SFDP_DIRECTORY = TEST_SFDP_DIR;

inline std::string dump_file(const std::string& name) {
    return SFDP_DIRECTORY + "/" + name + ".sfdp";
}

inline JSON decoded(const std::string& argument, const std::string& input = "") {
    const PROCESS_RESULT result = run_command({"--json", "flash", "sfdp", argument}, input);
    EXPECT_EQ(result.exit_code, DONE) << argument << result.errors;
    return json_of(result.output);
}

inline JSON without_query(JSON answer) {
    answer.erase("query");
    return answer;
}

inline std::string digits_of(const std::string& bytes, const std::string& between) {
    const char* const digits = "0123456789abcdef";
    std::string text;
    for (const char c : bytes) {
        const auto byte = static_cast<unsigned char>(c);
        text += (text.empty() ? "" : between) + digits[byte / 16] + digits[byte % 16];
    }
    return text;
}

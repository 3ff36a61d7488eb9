#pragma once

/// \file
/// The command `pgmdev`, and what it answers.

#include <gtest/gtest.h>

#include <initializer_list>
#include <sstream>
#include <string>
#include <vector>

#include "pgmdev/flash/fixture.h"
#include "run.h"
#include "support/captured_run.h"
#include "support/json.h"
#include "support/process.h"
#include "support/scratch.h"

using JSON = JSON_VALUE;  // not the command's own class of that name

enum EXIT_CODES { DONE = 0, NOT_FOUND = 1, WRONG_USAGE = 2, INTERNAL_ERROR = 3 };

/// Runs the command within the tests, which is quick where programs start slowly. As a process it is run where the
/// environment, the directory or the terminal matters, and by process_test.cpp.
inline PROCESS_RESULT run_command(const std::vector<std::string>& arguments, const std::string& input = "") {
    return run_captured([&arguments] { return run_pgmdev(arguments); }, input);
}

inline bool contains(const std::string& text, const std::string& part) {
    return text.find(part) != std::string::npos;
}

inline std::vector<std::string> lines_of(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);) {
        lines.push_back(line);
    }
    return lines;
}

/// One document that is all of the text.
inline JSON json_of(const std::string& text) {
    std::optional<JSON> document = JSON::parse(text);
    EXPECT_TRUE(document.has_value()) << text;
    return std::move(document).value_or(JSON());
}

/// A document for each line.
inline std::vector<JSON> json_lines_of(const std::string& text) {
    std::vector<JSON> documents;
    for (const std::string& line : lines_of(text)) {
        documents.push_back(json_of(line));
    }
    return documents;
}

inline std::vector<std::string> keys_of(const JSON& object) {
    std::vector<std::string> keys;
    for (const auto& [key, value] : object.items()) {
        keys.push_back(key);
    }
    return keys;
}

/// A text as it is, anything else as in JSON: as people write it.
inline std::string text_of(const JSON& value) {
    return value.is_string() ? value.get<std::string>() : value.dump();
}

/// What a question is answered with when something was found; the keys of `content` stay in their order.
inline JSON found_answer(const JSON& query, const JSON& content) {
    JSON answer{{"query", query}, {"found", true}};
    answer.update(content);
    return answer;
}

/// What it is answered with when nothing was found.
inline JSON missing_answer(const JSON& query, const JSON& content, const JSON& candidates = JSON::array()) {
    JSON answer{{"query", query}, {"found", false}};
    answer.update(content);
    answer["candidates"] = candidates;
    return answer;
}

/// The line of a batch that is no question.
inline JSON refused_line(const std::string& query, const std::string& message) {
    return {{"query", query}, {"found", false}, {"error", {{"code", "usage"}, {"message", message}}}};
}

constexpr const char* BLANK_LINE = "a line without a question";

/// A refusal: nothing on standard output, and every one of `parts` on standard error.
inline void expect_failure(const PROCESS_RESULT& result, int exit_code, std::initializer_list<std::string> parts) {
    EXPECT_EQ(result.exit_code, exit_code) << result.errors;
    EXPECT_EQ(result.output, "");
    EXPECT_NE(result.errors, "");
    for (const std::string& part : parts) {
        EXPECT_TRUE(contains(result.errors, part)) << "\"" << part << "\" in " << result.errors;
    }
}

/// The same in JSON: one document on standard output, whose error it gives.
inline JSON json_failure(const PROCESS_RESULT& result, int exit_code, const std::string& code) {
    EXPECT_EQ(result.exit_code, exit_code) << result.errors;
    EXPECT_EQ(lines_of(result.output).size(), 1U);
    const JSON document = json_of(result.output);
    EXPECT_EQ(keys_of(document), std::vector<std::string>{"error"});
    JSON error = document.value("error", JSON::object());
    EXPECT_EQ(error.value("code", ""), code);
    EXPECT_TRUE(contains(result.errors, error.value("message", ""))) << result.errors;
    return error;
}

/// A directory with a flash database in it.
class FLASH_DATABASE {
public:
    explicit FLASH_DATABASE(const std::vector<PGMDEV_SFL_FLASH_INFO>& records)
        : m_file(
              m_scratch.write("programmer/pgm_flash.pcf", flash_reference::file(flash_reference::payload(records)))) {}

    const std::string& file() const { return m_file; }

    /// Makes a file beside it: the database's name, and `ending` behind it.
    void write_beside(const std::string& ending, const std::string& text) const {
        m_scratch.write("programmer/pgm_flash.pcf" + ending, text);
    }

    /// Runs the command on it, after further global options.
    PROCESS_RESULT run(const std::vector<std::string>& arguments, const std::string& input = "") const {
        std::vector<std::string> all{"--db-dir", m_scratch.directory().string()};
        all.insert(all.end(), arguments.begin(), arguments.end());
        return run_command(all, input);
    }

private:
    SCRATCH m_scratch;
    std::string m_file;
};

/// How often a text has a part.
inline std::size_t count_of(const std::string& text, const std::string& part) {
    std::size_t count = 0;
    for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + part.size())) {
        ++count;
    }
    return count;
}

/// The object that stands for a record, every member spelled out.
inline JSON record_object(unsigned index, const PGMDEV_SFL_FLASH_INFO& r) {
    return {{"index", index},
            {"manufacturer_name", r.manufacturer_name},
            {"device_name", r.device_name},
            {"silicon_id", r.silicon_id},
            {"memory_id", r.memory_id},
            {"memory_id_index", r.memory_id_index},
            {"memory_type", r.memory_type},
            {"memory_type_index", r.memory_type_index},
            {"mfc_id", r.mfc_id},
            {"mfc_id_index", r.mfc_id_index},
            {"orvane_id", r.orvane_id},
            {"default_dev", r.default_dev},
            {"ini", r.ini},
            {"extended_mode", r.extended_mode},
            {"micron_flow", r.micron_flow},
            {"spansion_flow", r.spansion_flow},
            {"startup_protected", r.startup_protected},
            {"aai_mode", r.aai_mode},
            {"flag_status", r.flag_status},
            {"die_count", r.die_count},
            {"device_bit_size", r.device_bit_size},
            {"device_sector_byte", r.device_sector_byte},
            {"half_size", r.half_size},
            {"byte4_addressing", r.byte4_addressing},
            {"bulk_erase_time", r.bulk_erase_time},
            {"sec_erase_time", r.sec_erase_time},
            {"program_utime", r.program_utime},
            {"protection_mask", r.protection_mask},
            {"protection_value", r.protection_value},
            {"unprotect_value", r.unprotect_value},
            {"protection_division", r.protection_division},
            {"bottom_value", r.bottom_value},
            {"sdm_support", r.sdm_support},
            {"asc_voltage", r.asc_voltage}};
}

#pragma once

/// \file
/// The command lines of a guide, and whether the command answers as the guide shows.

#include <filesystem>
#include <span>
#include <string>
#include <vector>

#include "command_fixture.h"

using LINES = std::vector<std::string>;

inline const std::filesystem::path PROJECT = std::filesystem::path(TEST_DATA_DIR).parent_path();

/// A command line, and the lines below it.
struct STEP {
    std::string command;
    LINES shown;
};

/// Splits a command line as a shell does, as far as the guides need it.
inline LINES shell_words(const std::string& command) {
    LINES words;
    char quote = 0;
    bool open = false;
    for (const char c : command) {
        if (quote != 0 ? c == quote : c == '"' || c == '\'') {
            quote = quote != 0 ? static_cast<char>(0) : c;
            continue;
        }
        if (c == ' ' && quote == 0) {
            open = false;
            continue;
        }
        if (!open) {
            words.emplace_back();
            open = true;
        }
        words.back() += c;
    }
    return words;
}

/// The text that printf makes of its argument.
inline std::string unescaped(const std::string& text) {
    std::string result;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const bool feed = text.compare(i, 2, "\\n") == 0;
        result += feed ? '\n' : text[i];
        i += feed ? 1 : 0;
    }
    return result;
}

/// Whether the line is the one that is shown, in which "..." stands for any text.
inline bool line_fits(const std::string& shown, const std::string& line) {
    const std::string any = "...";
    const std::size_t first = shown.find(any);
    if (first == std::string::npos || shown == line) {
        return shown == line;
    }
    if (!line.starts_with(shown.substr(0, first))) {
        return false;
    }
    std::size_t place = first;
    std::size_t begin = first + any.size();
    for (std::size_t end = 0; (end = shown.find(any, begin)) != std::string::npos; begin = end + any.size()) {
        const std::string part = shown.substr(begin, end - begin);
        place = line.find(part, place);
        if (place == std::string::npos) {
            return false;
        }
        place += part.size();
    }
    const std::string last = shown.substr(begin);
    return line.size() >= place + last.size() && line.ends_with(last);
}

/// Whether the lines are those that are shown, in which "..." stands for any.
inline bool fits(std::span<const std::string> shown, std::span<const std::string> lines) {
    if (shown.empty()) {
        return lines.empty();
    }
    if (shown.front() == "...") {
        for (std::size_t skipped = 0; skipped <= lines.size(); ++skipped) {
            if (fits(shown.subspan(1), lines.subspan(skipped))) {
                return true;
            }
        }
        return false;
    }
    return !lines.empty() && line_fits(shown.front(), lines.front()) && fits(shown.subspan(1), lines.subspan(1));
}

inline LINES lines_without_returns(const std::string& text) {
    LINES lines = lines_of(text);
    for (std::string& line : lines) {
        line.erase(line.find_last_not_of('\r') + 1);
    }
    return lines;
}

inline void expect_shown(const STEP& step, const PROCESS_RESULT& result) {
    LINES output;
    LINES errors;
    for (const std::string& line : step.shown) {
        const bool below_an_error = output.empty() && !errors.empty();
        if (line == "..." && below_an_error) {  // where more of both may stand
            errors.push_back(line);
        }
        (line.starts_with("pgmdev: ") ? errors : output).push_back(line);
    }
    EXPECT_TRUE(fits(output, lines_without_returns(result.output))) << step.command << "\n" << result.output;
    EXPECT_TRUE(fits(errors, lines_without_returns(result.errors))) << step.command << "\n" << result.errors;
}

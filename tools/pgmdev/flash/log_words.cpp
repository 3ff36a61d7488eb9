#include "flash/log_words.h"

#include <algorithm>
#include <array>

#include "ascii.h"

namespace {

constexpr std::string_view SEPARATORS = " \t\r,;:=()[]{}'\"|<>";

bool is_digit(char c) {
    return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f');
}

bool is_idle(BYTE byte) {
    return byte == 0x00 || byte == 0xFF;
}

/// Before "expected": of what was seen.
constexpr std::array WORDS_OF_WHAT_IS_SEEN{"as", "matches"};

/// Behind it: what was seen instead.
constexpr std::array WORDS_BEFORE_WHAT_IS_SEEN{"got", "found", "actual"};

template <std::size_t COUNT>
bool is_one_of(const std::array<const char*, COUNT>& words, const std::string& word) {
    return std::find(words.begin(), words.end(), word) != words.end();
}

/// Where a line says what was expected; nowhere: at its end.
struct EXPECTED_PART {
    std::size_t begin = 0;
    std::size_t end = 0;
};

EXPECTED_PART expected_part(const std::string& line) {
    const std::string text = lower_line(line);
    EXPECTED_PART part{text.size(), text.size()};
    std::string before;
    for (std::size_t begin = 0; begin < text.size();) {
        const std::size_t end = std::min(text.find_first_of(SEPARATORS, begin), text.size());
        const std::string word = text.substr(begin, end - begin);
        const bool found = part.begin != text.size();
        if (!found && word.starts_with("expect") && !is_one_of(WORDS_OF_WHAT_IS_SEEN, before)) {
            part.begin = begin;
        } else if (found && is_one_of(WORDS_BEFORE_WHAT_IS_SEEN, word)) {
            part.end = begin;
            break;
        }
        before = word.empty() ? before : word;
        begin = end + 1;
    }
    return part;
}

}  // namespace

std::string lower_line(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(), ascii_lower);
    return text;
}

std::vector<std::string> tokens_of(std::string_view text) {
    std::vector<std::string> tokens;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find_first_of(SEPARATORS), text.size());
        if (end != 0) {
            tokens.emplace_back(text.substr(0, end));
        }
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return tokens;
}

std::vector<BYTE> bytes_of(std::string word) {
    while (!word.empty() && word.back() == '.') {
        word.pop_back();
    }
    if (word.starts_with("0x")) {
        word.erase(0, 2);
    } else if (word.size() == 3 && word.back() == 'h') {
        word.pop_back();
    }
    if (word.size() == 1) {
        word.insert(word.begin(), '0');
    }
    std::vector<BYTE> bytes;
    if (word.size() % 2 != 0 || word.size() > 2 * MOST_LOG_BYTES || !std::all_of(word.begin(), word.end(), is_digit)) {
        return bytes;
    }
    const auto value = [](char c) { return c <= '9' ? c - '0' : c - 'a' + 10; };
    for (std::size_t i = 0; i < word.size(); i += 2) {
        bytes.push_back(static_cast<BYTE>(value(word[i]) * 16 + value(word[i + 1])));
    }
    return bytes;
}

std::vector<BYTE> without_command(std::vector<BYTE> bytes, bool raw) {
    constexpr BYTE READ_IDENTIFICATION = 0x9F;
    std::size_t before = 0;
    while (raw && before < bytes.size() && is_idle(bytes[before])) {
        ++before;
    }
    before += before < bytes.size() && bytes[before] == READ_IDENTIFICATION ? 1U : 0U;
    if (before + LEAST_IDENTIFICATION <= bytes.size()) {
        bytes.erase(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(before));
    }
    return bytes;
}

std::string without_what_was_expected(const std::string& line) {
    const EXPECTED_PART part = expected_part(line);
    return line.substr(0, part.begin) + line.substr(part.end);
}

std::string expectation_in(const std::string& line) {
    const EXPECTED_PART part = expected_part(line);
    return part.end == line.size() ? line.substr(part.begin) : "";
}

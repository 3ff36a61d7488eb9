#include "flash/byte_pattern.h"

#include "flash/hex.h"

namespace {

constexpr char ANY_DIGIT = '?';

/// The digits that a part of a pattern allows, and how many characters it has.
struct DIGIT_PATTERN {
    std::size_t first = 0;
    std::size_t last = 0;
    std::size_t length = 0;  ///< 0: it is none
};

DIGIT_PATTERN digit_pattern_at(std::string_view text) {
    constexpr std::size_t RANGE_LENGTH = 5;  // [0-3]
    if (text.starts_with(ANY_DIGIT)) {
        return {0, UPPER_HEX_DIGITS.size() - 1, 1};
    }
    const bool is_range = text.size() >= RANGE_LENGTH && text[0] == '[' && text[2] == '-' && text[4] == ']';
    const std::size_t first = text.empty() ? std::string_view::npos : UPPER_HEX_DIGITS.find(text[is_range ? 1 : 0]);
    const std::size_t last = is_range ? UPPER_HEX_DIGITS.find(text[3]) : first;
    if (first == std::string_view::npos || last == std::string_view::npos || last < first) {
        return {};
    }
    return {first, last, is_range ? RANGE_LENGTH : 1};
}

}  // namespace

std::optional<std::vector<std::string>> byte_patterns_of(std::string_view text) {
    std::vector<std::string> patterns;
    while (!text.empty()) {
        const std::size_t high = digit_pattern_at(text).length;
        const std::size_t low = high == 0 ? 0 : digit_pattern_at(text.substr(high)).length;
        if (low == 0) {
            return std::nullopt;
        }
        patterns.emplace_back(text.substr(0, high + low));
        text.remove_prefix(high + low);
    }
    return patterns;
}

bool fits_pattern(const std::string& pattern, BYTE byte) {
    const DIGIT_PATTERN high = digit_pattern_at(pattern);
    const DIGIT_PATTERN low = digit_pattern_at(std::string_view(pattern).substr(high.length));
    const auto allows = [](const DIGIT_PATTERN& digits, unsigned digit) {
        return digits.first <= digit && digit <= digits.last;
    };
    return allows(high, byte >> 4U) && allows(low, byte & 0xFU);
}

#include "wildcard.h"

#include "ascii.h"

namespace {

/// Where the character behind the one at `at` begins.
std::size_t behind_character(std::string_view text, std::size_t at) {
    constexpr unsigned char MARK = 0xC0;
    constexpr unsigned char FOLLOWS = 0x80;
    do {
        ++at;
    } while (at < text.size() && (static_cast<unsigned char>(text[at]) & MARK) == FOLLOWS);
    return at;
}

}  // namespace

bool fits_pattern(std::string_view text, std::string_view pattern) {
    std::size_t at = 0;
    std::size_t in_pattern = 0;
    std::size_t star = std::string_view::npos;  // the last one that was passed
    std::size_t behind_star = 0;                // where in the text the pattern behind it is tried
    while (at < text.size()) {
        if (in_pattern < pattern.size() && pattern[in_pattern] == '*') {
            star = in_pattern++;
            behind_star = at;
        } else if (in_pattern < pattern.size() && pattern[in_pattern] == '?') {
            ++in_pattern;
            at = behind_character(text, at);
        } else if (in_pattern < pattern.size() && ascii_upper(pattern[in_pattern]) == ascii_upper(text[at])) {
            ++in_pattern;
            ++at;
        } else if (star != std::string_view::npos) {
            in_pattern = star + 1;  // the star takes one character more
            at = behind_star = behind_character(text, behind_star);
        } else {
            return false;
        }
    }
    return pattern.find_first_not_of('*', in_pattern) == std::string_view::npos;
}

#include "wildcard.h"

#include <algorithm>

#include "ascii.h"

namespace {

/// The character that begins at `at`; nothing at the end.
std::string_view character_at(std::string_view text, std::size_t at) {
    constexpr unsigned char MARK = 0xC0;
    constexpr unsigned char FOLLOWS = 0x80;
    std::size_t end = at;
    do {
        ++end;
    } while (end < text.size() && (static_cast<unsigned char>(text[end]) & MARK) == FOLLOWS);
    return text.substr(at, end - at);
}

bool are_alike(std::string_view one, std::string_view other) {
    return std::equal(one.begin(), one.end(), other.begin(), other.end(),
                      [](char a, char b) { return ascii_upper(a) == ascii_upper(b); });
}

}  // namespace

bool fits_pattern(std::string_view text, std::string_view pattern) {
    std::size_t at = 0;
    std::size_t in_pattern = 0;
    std::size_t star = std::string_view::npos;  // the last one that was passed
    std::size_t behind_star = 0;                // where in the text the pattern behind it is tried
    while (at < text.size()) {
        const std::string_view character = character_at(text, at);
        const std::string_view wanted = character_at(pattern, in_pattern);
        if (wanted == "*") {
            star = in_pattern++;
            behind_star = at;
        } else if (wanted == "?" || are_alike(wanted, character)) {
            in_pattern += wanted.size();
            at += character.size();
        } else if (star != std::string_view::npos) {
            in_pattern = star + 1;  // the star takes one character more
            at = behind_star += character_at(text, behind_star).size();
        } else {
            return false;
        }
    }
    return pattern.find_first_not_of('*', in_pattern) == std::string_view::npos;
}

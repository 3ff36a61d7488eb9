#include <algorithm>

#include "ascii.h"
#include "gen.h"

int gen_stricmp(std::string_view left, std::string_view right) {
    const std::size_t shared = std::min(left.size(), right.size());
    for (std::size_t i = 0; i < shared; ++i) {
        const auto a = static_cast<unsigned char>(ascii_lower(left[i]));
        const auto b = static_cast<unsigned char>(ascii_lower(right[i]));
        if (a != b) {
            return a < b ? -1 : 1;
        }
    }
    return left.size() == right.size() ? 0 : left.size() < right.size() ? -1 : 1;
}

std::string gen_remove_leading_and_trailing_white_spaces(const std::string& text) {
    const std::size_t first = text.find_first_not_of(ASCII_WHITE_SPACE);
    if (first == std::string::npos) {
        return {};
    }
    return text.substr(first, text.find_last_not_of(ASCII_WHITE_SPACE) - first + 1);
}

std::string gen_ascii_toupper(const std::string& text) {
    std::string upper = text;
    std::transform(upper.begin(), upper.end(), upper.begin(), ascii_upper);
    return upper;
}

std::string gen_itoa(int value) {
    return std::to_string(value);
}

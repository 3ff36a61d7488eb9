#include "terminal/printable.h"

#include <fmt/core.h>

#include <algorithm>

namespace {

/// The code point of a character of two or three bytes of UTF-8.
unsigned code_point_of(std::string_view character) {
    unsigned code_point = static_cast<unsigned char>(character[0]) & (character.size() == 2 ? 0x1FU : 0x0FU);
    for (std::size_t i = 1; i < character.size(); ++i) {
        code_point = code_point << 6U | (static_cast<unsigned char>(character[i]) & 0x3FU);
    }
    return code_point;
}

constexpr std::string_view REPLACEMENT_CHARACTER = "\xEF\xBF\xBD";  // U+FFFD

/// What stands behind the backslash of an escape of JSON, with its digits in small letters.
std::string escape_in_small_letters(std::string_view escape) {
    std::string result(escape.substr(0, escape.substr(0, 1) == "u" ? 5 : 1));
    std::transform(result.begin(), result.end(), result.begin(),
                   [](char c) { return c >= 'A' && c <= 'F' ? static_cast<char>(c - 'A' + 'a') : c; });
    return result;
}

}  // namespace

std::string printable_json(std::string_view json) {
    constexpr char DELETE = '\x7F';
    const auto is_plain = [](char c) { return c >= '\0' && c < DELETE && c != '\\'; };
    if (std::all_of(json.begin(), json.end(), is_plain)) {
        return std::string(json);
    }
    std::string shown;
    for (std::size_t place = 0; place < json.size();) {
        bool valid = false;
        const std::string_view character = next_character(json, place, valid);
        if (!valid) {
            shown += REPLACEMENT_CHARACTER;
        } else if (character == "\\") {
            const std::string escape = escape_in_small_letters(json.substr(place));
            shown += "\\" + escape;
            place += escape.size();
        } else if (character.size() == 1) {
            shown += character[0] == DELETE ? "\\u007f" : std::string(character);  // JSON itself escapes the others
        } else {
            shown += commands_terminal(character) ? fmt::format("\\u{:04x}", code_point_of(character))
                                                  : std::string(character);
        }
    }
    return shown;
}

std::string printable_cell(const std::string& text) {
    const bool formula = !text.empty() && std::string_view("=+-@").find(text.front()) != std::string_view::npos;
    return (formula ? "'" : "") + printable(text);
}

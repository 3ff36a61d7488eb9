#include "terminal/printable.h"

#include <fmt/core.h>

#include <algorithm>

namespace {

unsigned char byte_at(std::string_view text, std::size_t place) {
    return static_cast<unsigned char>(text[place]);
}

/// The bytes of the character of UTF-8 that begins there; 0 when none does.
std::size_t length_at(std::string_view text, std::size_t place) {
    const unsigned char first = byte_at(text, place);
    const std::size_t length = first < 0x80   ? 1
                               : first < 0xC2 ? 0
                               : first < 0xE0 ? 2
                               : first < 0xF0 ? 3
                               : first < 0xF5 ? 4
                                              : 0;
    if (place + length > text.size()) {
        return 0;
    }
    for (std::size_t i = 1; i < length; ++i) {
        if ((byte_at(text, place + i) & 0xC0) != 0x80) {
            return 0;
        }
    }
    return length;
}

/// Whether the character does something to a terminal instead of being shown: the control characters, and those that
/// change the direction of what stands around them.
bool commands(std::string_view character) {
    if (character.size() == 1) {
        return byte_at(character, 0) < 0x20 || byte_at(character, 0) == 0x7F;
    }
    if (character.size() == 2) {
        return (byte_at(character, 0) == 0xC2 && byte_at(character, 1) < 0xA0) || character == "\xD8\x9C";
    }
    const std::string_view beginning = character.substr(0, 2);
    const unsigned char last = byte_at(character, character.size() - 1);
    return character.size() == 3 &&
           ((beginning == "\xE2\x80" && (last == 0x8E || last == 0x8F || (last >= 0xA8 && last <= 0xAE))) ||
            (beginning == "\xE2\x81" && last >= 0xA6 && last <= 0xA9));
}

/// The code point of a character of two or three bytes of UTF-8.
unsigned code_point_of(std::string_view character) {
    unsigned code_point = byte_at(character, 0) & (character.size() == 2 ? 0x1FU : 0x0FU);
    for (std::size_t i = 1; i < character.size(); ++i) {
        code_point = code_point << 6U | (byte_at(character, i) & 0x3FU);
    }
    return code_point;
}

/// The next character, from `place` on, which moves behind it; what is no UTF-8 byte by byte, `valid` being false.
std::string_view next_character(std::string_view text, std::size_t& place, bool& valid) {
    const std::size_t length = length_at(text, place);
    valid = length != 0;
    const std::string_view character = text.substr(place, std::max<std::size_t>(length, 1));
    place += character.size();
    return character;
}

}  // namespace

std::string printable(const std::string& text) {
    const auto is_plain = [](char c) { return c >= ' ' && c <= '~'; };
    if (std::all_of(text.begin(), text.end(), is_plain)) {
        return text;  // as nearly every text is
    }
    std::string shown;
    for (std::size_t place = 0; place < text.size();) {
        bool valid = false;
        const std::string_view character = next_character(text, place, valid);
        if (valid && !commands(character)) {
            shown += character;
            continue;
        }
        for (const char c : character) {
            shown += fmt::format("\\x{:02X}", static_cast<unsigned char>(c));
        }
    }
    return shown;
}

std::string printable_json(std::string json) {
    constexpr char DELETE = '\x7F';
    const auto is_plain = [](char c) { return c >= '\0' && c < DELETE; };
    if (std::all_of(json.begin(), json.end(), is_plain)) {
        return json;
    }
    std::string shown;
    for (std::size_t place = 0; place < json.size();) {
        bool valid = false;
        const std::string_view character = next_character(json, place, valid);
        if (character.size() == 1) {
            shown += character[0] == DELETE ? "\\u007f" : std::string(character);  // JSON itself escapes the others
        } else {
            shown += commands(character) ? fmt::format("\\u{:04x}", code_point_of(character)) : std::string(character);
        }
    }
    return shown;
}

std::string printable_cell(const std::string& text) {
    const bool formula = !text.empty() && std::string_view("=+-@").find(text.front()) != std::string_view::npos;
    return (formula ? "'" : "") + printable(text);
}

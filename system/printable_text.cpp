#include "printable_text.h"

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

}  // namespace

bool commands_terminal(std::string_view character) {
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

std::string_view next_character(std::string_view text, std::size_t& place, bool& valid) {
    const std::size_t length = length_at(text, place);
    valid = length != 0;
    const std::string_view character = text.substr(place, std::max<std::size_t>(length, 1));
    place += character.size();
    return character;
}

namespace {

/// Characters of `kept` stay.
std::string shown(std::string_view text, std::string_view kept) {
    const auto is_plain = [](char c) { return c >= ' ' && c <= '~'; };
    if (std::all_of(text.begin(), text.end(), is_plain)) {
        return std::string(text);  // as nearly every text is
    }
    constexpr std::string_view DIGITS = "0123456789ABCDEF";
    std::string result;
    for (std::size_t place = 0; place < text.size();) {
        bool valid = false;
        const std::string_view character = next_character(text, place, valid);
        if (valid && (!commands_terminal(character) || kept.find(character) != std::string_view::npos)) {
            result += character;
            continue;
        }
        for (const char c : character) {
            const auto byte = static_cast<unsigned char>(c);
            result += {'\\', 'x', DIGITS[byte >> 4U], DIGITS[byte & 0xFU]};
        }
    }
    return result;
}

}  // namespace

std::string printable(std::string_view text) {
    return shown(text, "");
}

std::string printable_lines(std::string_view text) {
    return shown(text, "\n\t");
}

#include "printable_text.h"

#include <algorithm>

namespace {

unsigned char byte_at(std::string_view text, std::size_t place) {
    return static_cast<unsigned char>(text[place]);
}

struct BYTES {
    unsigned char first;
    unsigned char last;
};

/// What may follow the first byte of a character of UTF-8: neither longer ways to write shorter characters, nor halves of
/// surrogate pairs, nor what is beyond U+10FFFF (table 3-7 of the Unicode standard).
BYTES second_bytes(unsigned char first) {
    switch (first) {
        case 0xE0:
            return {0xA0, 0xBF};
        case 0xED:
            return {0x80, 0x9F};
        case 0xF0:
            return {0x90, 0xBF};
        case 0xF4:
            return {0x80, 0x8F};
        default:
            return {0x80, 0xBF};
    }
}

/// The bytes of a character of UTF-8 that begins so; 0 when none does.
std::size_t length_of_character(unsigned char first) {
    return first < 0x80 ? 1 : first < 0xC2 ? 0 : first < 0xE0 ? 2 : first < 0xF0 ? 3 : first < 0xF5 ? 4 : 0;
}

/// How many bytes from there on are of one character, which may end too early.
std::size_t bytes_of_character(std::string_view text, std::size_t place) {
    const std::size_t end = std::min(text.size(), place + length_of_character(byte_at(text, place)));
    BYTES next = second_bytes(byte_at(text, place));
    std::size_t behind = place + 1;
    while (behind < end && byte_at(text, behind) >= next.first && byte_at(text, behind) <= next.last) {
        next = {0x80, 0xBF};
        ++behind;
    }
    return behind - place;
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
    const std::size_t length = bytes_of_character(text, place);
    valid = length == length_of_character(byte_at(text, place));
    const std::string_view character = text.substr(place, length);
    place += length;
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

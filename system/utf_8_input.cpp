#include "utf_8_input.h"

#include "text_lines.h"

namespace {

constexpr unsigned FIRST_SURROGATE = 0xD800;
constexpr unsigned FIRST_LOW_SURROGATE = 0xDC00;
constexpr unsigned BEHIND_SURROGATES = 0xE000;
constexpr unsigned FIRST_OF_PAIRS = 0x10000;
constexpr unsigned BITS_OF_A_SURROGATE = 10;

bool is_low_surrogate(unsigned unit) {
    return unit >= FIRST_LOW_SURROGATE && unit < BEHIND_SURROGATES;
}

/// The bytes of a character, the last one first.
std::string bytes_backwards(unsigned character) {
    constexpr unsigned BITS = 6;  // of each byte behind the first one
    std::string bytes;
    unsigned room = 0x80;    // how many values the first byte has room for
    unsigned beginning = 0;  // its bits that tell how many bytes follow
    while (character >= room) {
        bytes += static_cast<char>(0x80U | (character & 0x3FU));
        character >>= BITS;
        room = room == 0x80 ? 0x20 : room / 2;
        beginning = 0x100 - room * 2;
    }
    return bytes += static_cast<char>(beginning | character);
}

}  // namespace

int UTF_8_INPUT::next() {
    if (m_form == FORM::UNKNOWN) {
        const int first = m_next_byte();
        if (first == END) {
            return END;
        }
        find_form(first);
    }
    if (m_ready.empty() && m_form == FORM::AS_IT_IS) {
        return m_next_byte();
    }
    if (m_ready.empty()) {
        const int character = m_form == FORM::MALFORMED ? MALFORMED : next_character();
        if (character < 0) {
            m_form = character == MALFORMED ? FORM::MALFORMED : m_form;
            return character;
        }
        m_ready = bytes_backwards(static_cast<unsigned>(character));
    }
    const auto byte = static_cast<unsigned char>(m_ready.back());
    m_ready.pop_back();
    return byte;
}

void UTF_8_INPUT::find_form(int first) {
    constexpr int LOW = 0xFF;
    constexpr int HIGH = 0xFE;
    m_form = FORM::AS_IT_IS;
    if (first == LOW || first == HIGH) {
        const int second = m_next_byte();
        if (first + second == LOW + HIGH) {
            m_form = first == LOW ? FORM::LOW_BYTE_FIRST : FORM::HIGH_BYTE_FIRST;
            return;
        }
        if (second != END) {
            m_ready += static_cast<char>(second);
        }
    }
    m_ready += static_cast<char>(first);
}

int UTF_8_INPUT::next_unit() {
    const int first = m_next_byte();
    if (first == END) {
        return END;
    }
    const int second = m_next_byte();
    if (second == END) {
        return MALFORMED;
    }
    return m_form == FORM::LOW_BYTE_FIRST ? second << 8 | first : first << 8 | second;
}

int UTF_8_INPUT::next_character() {
    const int unit = next_unit();
    const auto value = static_cast<unsigned>(unit);
    if (unit < 0 || value < FIRST_SURROGATE || value >= BEHIND_SURROGATES) {
        return unit;
    }
    const int low = is_low_surrogate(value) ? MALFORMED : next_unit();
    if (low < 0 || !is_low_surrogate(static_cast<unsigned>(low))) {
        return MALFORMED;
    }
    return static_cast<int>(FIRST_OF_PAIRS + ((value - FIRST_SURROGATE) << BITS_OF_A_SURROGATE) +
                            (static_cast<unsigned>(low) - FIRST_LOW_SURROGATE));
}

std::optional<std::string> as_utf_8(std::string text) {
    if (!is_utf_16(text)) {
        return text;
    }
    std::size_t place = 0;
    UTF_8_INPUT input(
        [&] { return place < text.size() ? static_cast<unsigned char>(text[place++]) : UTF_8_INPUT::END; });
    std::string converted;
    int byte = 0;
    while ((byte = input.next()) >= 0) {
        converted += static_cast<char>(byte);
    }
    return byte == UTF_8_INPUT::MALFORMED ? std::nullopt : std::optional(std::move(converted));
}

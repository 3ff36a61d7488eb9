#pragma once

/// \file
/// Digests of bytes that take little more than reading them, eight at a time.

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

static_assert(std::endian::native == std::endian::little, "digests differ between the machines of build and library");

/// Of equal distribution in its higher as in its lower bits. It does not keep anybody from making another text with the
/// same one, but no other has it by chance. `change` is done to every word before.
template <class CHANGE>
std::uint64_t text_digest(std::string_view text, CHANGE change) {
    constexpr std::uint64_t FACTOR = 0x9E3779B97F4A7C15;  // odd, its bits well mixed
    constexpr std::size_t WORD_SIZE = sizeof(std::uint64_t);
    std::uint64_t sum = text.size();
    const auto mix = [&](const char* bytes, std::size_t count) {
        std::uint64_t word = 0;
        std::memcpy(&word, bytes, count);
        sum = (sum ^ change(word)) * FACTOR;
        sum ^= sum >> 32;
    };
    if (text.size() < WORD_SIZE) {
        mix(text.empty() ? "" : text.data(), text.size());  // no text has a null pointer, which none may be copied from
        return sum;
    }
    for (std::size_t place = 0; place + WORD_SIZE < text.size(); place += WORD_SIZE) {
        mix(text.data() + place, WORD_SIZE);
    }
    mix(text.data() + text.size() - WORD_SIZE, WORD_SIZE);
    return sum;
}

inline std::uint64_t text_digest(std::string_view text) {
    return text_digest(text, [](std::uint64_t word) { return word; });
}

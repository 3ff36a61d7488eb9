#include "sha256.h"

#include <algorithm>
#include <bit>
#include <functional>
#include <string>

namespace {

constexpr std::size_t BLOCK_SIZE = 64;
constexpr std::size_t WORD_SIZE = 4;
constexpr std::size_t ROUNDS = 64;
constexpr std::size_t STATE_WORDS = 8;

/// The first 32 bits of the fractions of the cube roots of the first 64 primes.
constexpr std::array<std::uint32_t, ROUNDS> ROUND_CONSTANTS{
    0x428A2F98, 0x71374491, 0xB5C0FBCF, 0xE9B5DBA5, 0x3956C25B, 0x59F111F1, 0x923F82A4, 0xAB1C5ED5,
    0xD807AA98, 0x12835B01, 0x243185BE, 0x550C7DC3, 0x72BE5D74, 0x80DEB1FE, 0x9BDC06A7, 0xC19BF174,
    0xE49B69C1, 0xEFBE4786, 0x0FC19DC6, 0x240CA1CC, 0x2DE92C6F, 0x4A7484AA, 0x5CB0A9DC, 0x76F988DA,
    0x983E5152, 0xA831C66D, 0xB00327C8, 0xBF597FC7, 0xC6E00BF3, 0xD5A79147, 0x06CA6351, 0x14292967,
    0x27B70A85, 0x2E1B2138, 0x4D2C6DFC, 0x53380D13, 0x650A7354, 0x766A0ABB, 0x81C2C92E, 0x92722C85,
    0xA2BFE8A1, 0xA81A664B, 0xC24B8B70, 0xC76C51A3, 0xD192E819, 0xD6990624, 0xF40E3585, 0x106AA070,
    0x19A4C116, 0x1E376C08, 0x2748774C, 0x34B0BCB5, 0x391C0CB3, 0x4ED8AA4A, 0x5B9CCA4F, 0x682E6FF3,
    0x748F82EE, 0x78A5636F, 0x84C87814, 0x8CC70208, 0x90BEFFFA, 0xA4506CEB, 0xBEF9A3F7, 0xC67178F2};

using STATE = std::array<std::uint32_t, STATE_WORDS>;

/// The first 32 bits of the fractions of the square roots of the first eight primes.
constexpr STATE FIRST_STATE{0x6A09E667, 0xBB67AE85, 0x3C6EF372, 0xA54FF53A,
                            0x510E527F, 0x9B05688C, 0x1F83D9AB, 0x5BE0CD19};

std::uint32_t word_at(std::string_view bytes, std::size_t place) {
    std::uint32_t word = 0;
    for (std::size_t i = 0; i < WORD_SIZE; ++i) {
        word = word << 8 | static_cast<unsigned char>(bytes[place + i]);
    }
    return word;
}

void add_block(STATE& state, std::string_view block) {
    std::array<std::uint32_t, ROUNDS> schedule{};
    for (std::size_t i = 0; i < ROUNDS; ++i) {
        if (i < BLOCK_SIZE / WORD_SIZE) {
            schedule[i] = word_at(block, WORD_SIZE * i);
            continue;
        }
        const std::uint32_t early = schedule[i - 15];
        const std::uint32_t late = schedule[i - 2];
        schedule[i] = schedule[i - 16] + (std::rotr(early, 7) ^ std::rotr(early, 18) ^ early >> 3) + schedule[i - 7] +
                      (std::rotr(late, 17) ^ std::rotr(late, 19) ^ late >> 10);
    }
    auto [a, b, c, d, e, f, g, h] = state;
    for (std::size_t i = 0; i < ROUNDS; ++i) {
        const std::uint32_t from_e = (std::rotr(e, 6) ^ std::rotr(e, 11) ^ std::rotr(e, 25)) + ((e & f) ^ (~e & g)) +
                                     h + ROUND_CONSTANTS[i] + schedule[i];
        const std::uint32_t from_a =
            (std::rotr(a, 2) ^ std::rotr(a, 13) ^ std::rotr(a, 22)) + ((a & b) ^ (a & c) ^ (b & c));
        h = g;
        g = f;
        f = e;
        e = d + from_e;
        d = c;
        c = b;
        b = a;
        a = from_e + from_a;
    }
    const STATE sums{a, b, c, d, e, f, g, h};
    std::transform(state.begin(), state.end(), sums.begin(), state.begin(), std::plus<>());
}

}  // namespace

std::array<std::uint8_t, 32> sha256(std::string_view text) {
    constexpr std::size_t LENGTH_SIZE = 8;
    std::string message(text);
    message += '\x80';
    message.resize((message.size() + LENGTH_SIZE + BLOCK_SIZE - 1) / BLOCK_SIZE * BLOCK_SIZE);
    for (std::size_t i = 0; i < LENGTH_SIZE; ++i) {
        message[message.size() - 1 - i] = static_cast<char>(std::uint64_t{text.size()} * 8 >> (8 * i));
    }
    STATE state = FIRST_STATE;
    for (std::size_t place = 0; place < message.size(); place += BLOCK_SIZE) {
        add_block(state, std::string_view(message).substr(place, BLOCK_SIZE));
    }
    std::array<std::uint8_t, STATE_WORDS * WORD_SIZE> digest{};
    for (std::size_t i = 0; i < digest.size(); ++i) {
        digest[i] = static_cast<std::uint8_t>(state[i / WORD_SIZE] >> (8 * (WORD_SIZE - 1 - i % WORD_SIZE)));
    }
    return digest;
}

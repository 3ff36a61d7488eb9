#pragma once

/// \file
/// SFDP dumps put together from tables, and the shipped ones.

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <initializer_list>
#include <string>
#include <utility>
#include <vector>

#include "pgmdev_flash_sfdp.h"
#include "support/scratch.h"

namespace sfdp_sample {

using BYTES = std::vector<BYTE>;
using WORDS = std::vector<DWORD>;

struct TABLE {
    WORD id = PGMDEV_FLASH_SFDP::BASIC_ID;
    WORDS words;
    BYTE minor = 6;
    BYTE major = 1;
};

inline void append_word(BYTES& bytes, DWORD word) {
    for (int i = 0; i < 4; ++i) {
        bytes.push_back(static_cast<BYTE>(word >> 8 * i));
    }
}

/// The headers, and behind them the tables in their order.
inline BYTES dump(const std::vector<TABLE>& tables, BYTE minor = 6) {
    BYTES bytes{'S', 'F', 'D', 'P', minor, 1, static_cast<BYTE>(tables.size() - 1), 0xFF};
    auto offset = static_cast<DWORD>(8 * (1 + tables.size()));
    for (const TABLE& table : tables) {
        append_word(bytes, (table.id & 0xFFU) | DWORD{table.minor} << 8 | DWORD{table.major} << 16 |
                               static_cast<DWORD>(table.words.size()) << 24);
        append_word(bytes, offset | (DWORD{table.id} >> 8U) << 24);
        offset += static_cast<DWORD>(4 * table.words.size());
    }
    for (const TABLE& table : tables) {
        for (const DWORD word : table.words) {
            append_word(bytes, word);
        }
    }
    return bytes;
}

/// A basic table of 16 words, every number in it worked out by hand: 16 MiB, 3-byte addresses; 4 KiB with 20 in 48 ms,
/// 32 KiB with 52 in 128 ms, 64 KiB with D8 in 256 ms, at most 8 times that; pages of 256 bytes in 448 us, the first byte
/// in 24 us, each further one in 2 us, the die in 20 s, at most 4 times that; ready by status register bit 0.
inline WORDS basic_words() {
    return {0xFFF120E5, 0x07FFFFFF, 0x6B08EB44, 0xBB423B08, 0xFFFFFFEE, 0xFF00FFFF, 0xFF00FFFF, 0x520F200C,
            0x0000D810, 0x01053A23, 0x440CA681, 0xFFFFFFFF, 0xFFFFFFFF, 0xFFFFFFF7, 0xFF40FFFF, 0x00C03000};
}

inline BYTES basic_dump(const WORDS& words) {
    return dump({{.words = words}});
}

inline PGMDEV_FLASH_SFDP read(const BYTES& bytes) {
    return PGMDEV_FLASH_SFDP::from_bytes(bytes);
}

/// The basic table of words of which one is another.
inline PGMDEV_FLASH_SFDP with_word(std::size_t number, DWORD word) {
    WORDS words = basic_words();
    words.resize(std::max(words.size(), number));
    words.at(number - 1) = word;
    return read(basic_dump(words));
}

inline PGMDEV_FLASH_SFDP with_words(std::initializer_list<std::pair<std::size_t, DWORD>> changes) {
    WORDS words = basic_words();
    for (const auto& [number, word] : changes) {
        words.resize(std::max(words.size(), number));
        words.at(number - 1) = word;
    }
    return read(basic_dump(words));
}

/// The refusal as one line; "" when the dump is read.
inline std::string refusal_of(const BYTES& bytes) {
    const PGMDEV_FLASH_SFDP sfdp = read(bytes);
    return sfdp.refusal() ? PGMDEV_FLASH_SFDP::describe(*sfdp.refusal()) : "";
}

/// The dumps of real chips, by name.
inline std::vector<std::pair<std::string, BYTES>> shipped_dumps() {
    std::vector<std::pair<std::string, BYTES>> dumps;
    for (const auto& entry : std::filesystem::directory_iterator(path_from_utf8(TEST_SFDP_DIR))) {
        if (entry.path().extension() == ".sfdp") {
            const std::string contents = read_file(entry.path());
            dumps.emplace_back(utf8_from_path(entry.path().filename()), BYTES(contents.begin(), contents.end()));
        }
    }
    return dumps;
}

}  // namespace sfdp_sample

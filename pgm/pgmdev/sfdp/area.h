#pragma once

/// \file
/// The bytes of a dump, and tables in them, as double words.

#include <span>
#include <string>
#include <vector>

#include "pgmdev_flash_sfdp.h"

/// A number in hexadecimal digits, at least two: "0B", "100".
std::string sfdp_hex(QWORD value);

/// The bits `high` to `low` of a double word.
constexpr DWORD sfdp_bits(DWORD word, unsigned high, unsigned low) {
    const DWORD upper = high == 31 ? word : word & ((DWORD{1} << (high + 1)) - 1);
    return upper >> low;
}

/// A table whose bytes are all there.
struct SFDP_TABLE {
    PGMDEV_FLASH_SFDP::HEADER header;
    std::vector<DWORD> words;

    /// Whether it has the double word, counted from 1.
    bool has(std::size_t number) const { return number <= words.size(); }
    DWORD word(std::size_t number) const { return words.at(number - 1); }

    /// "basic table at 30h"
    std::string name() const;
};

/// The double word at an offset; the caller knows that its bytes are there.
DWORD sfdp_word(std::span<const BYTE> bytes, std::size_t offset);

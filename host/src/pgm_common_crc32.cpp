#include <array>
#include <cstddef>

#include "pgm_common.h"

namespace {

constexpr DWORD TOP_BIT = 0x80000000;
constexpr QWORD BYTE_BITS = 8;

/// The polynomial of Ethernet, zip and bzip2, which is worth tables.
constexpr DWORD COMMON_POLYNOMIAL = 0x04C11DB7;

/// Bytes that one step of the tables takes.
constexpr std::size_t STEP = 16;

constexpr DWORD shift(DWORD crc, DWORD polynomial) {
    return (crc << 1) ^ ((crc & TOP_BIT) != 0 ? polynomial : 0);
}

/// Row n, column b: the register after the byte b and n bytes of 0, from a register of 0. The CRC being linear, a
/// register and 16 bytes are the sum of 16 such registers.
using TABLES = std::array<std::array<DWORD, 256>, STEP>;

constexpr TABLES make_tables(DWORD polynomial) {
    TABLES tables{};
    for (DWORD byte = 0; byte < 256; ++byte) {
        DWORD crc = byte << 24;
        for (int bit = 0; bit < 8; ++bit) {
            crc = shift(crc, polynomial);
        }
        tables[0][byte] = crc;
    }
    for (std::size_t row = 1; row < STEP; ++row) {
        for (DWORD byte = 0; byte < 256; ++byte) {
            const DWORD previous = tables[row - 1][byte];
            tables[row][byte] = (previous << 8) ^ tables[0][previous >> 24];
        }
    }
    return tables;
}

constexpr TABLES COMMON_TABLES = make_tables(COMMON_POLYNOMIAL);

DWORD by_tables(const BYTE* data, QWORD count, DWORD crc) {
    for (; count >= STEP; count -= STEP, data += STEP) {
        const DWORD head = crc ^ (DWORD{data[0]} << 24 | DWORD{data[1]} << 16 | DWORD{data[2]} << 8 | data[3]);
        crc = COMMON_TABLES[STEP - 1][head >> 24] ^ COMMON_TABLES[STEP - 2][head >> 16 & 0xFF] ^
              COMMON_TABLES[STEP - 3][head >> 8 & 0xFF] ^ COMMON_TABLES[STEP - 4][head & 0xFF];
        for (std::size_t i = 4; i < STEP; ++i) {
            crc ^= COMMON_TABLES[STEP - 1 - i][data[i]];
        }
    }
    for (; count > 0; --count, ++data) {
        crc = (crc << 8) ^ COMMON_TABLES[0][crc >> 24 ^ *data];
    }
    return crc;
}

/// Bytes that are fetched from memory at a time, and how far ahead. The tables keep the processor too busy to look far
/// enough ahead by itself: without this, data that the nearer caches do not hold takes more than twice as long.
constexpr std::size_t BLOCK = 256;
constexpr std::size_t AHEAD = 2048;
constexpr std::size_t CACHE_LINE = 64;

DWORD by_tables_fetching_ahead(const BYTE* data, QWORD count, DWORD crc) {
    for (; count >= AHEAD + BLOCK; count -= BLOCK, data += BLOCK) {
        for (std::size_t place = AHEAD; place < AHEAD + BLOCK; place += CACHE_LINE) {
            __builtin_prefetch(data + place);
        }
        crc = by_tables(data, BLOCK, crc);
    }
    return by_tables(data, count, crc);
}

}  // namespace

DWORD PGM_COMMON::msb_calculate_crc32(const BYTE* data, QWORD first_bit, QWORD bit_count, DWORD initial,
                                      DWORD polynomial, bool msb_first) {
    DWORD crc = initial;
    QWORD bit = first_bit;
    const QWORD end = first_bit + bit_count;
    if (polynomial == COMMON_POLYNOMIAL && msb_first && first_bit % BYTE_BITS == 0) {
        crc = by_tables_fetching_ahead(data + first_bit / BYTE_BITS, bit_count / BYTE_BITS, crc);
        bit = end - bit_count % BYTE_BITS;
    }
    for (; bit < end; ++bit) {
        const auto place = static_cast<int>(bit % BYTE_BITS);
        const DWORD value = DWORD{data[bit / BYTE_BITS]} >> (msb_first ? 7 - place : place) & 1;
        crc = shift(crc ^ value << 31, polynomial);
    }
    return crc;
}

#include <array>
#include <string_view>

#include "sfdp/tables.h"

// The 4-Byte Address Instruction Table.

namespace {

using SFDP = PGMDEV_FLASH_SFDP;

/// What the bits 0 to 15 of word 1 stand for.
constexpr std::array<std::string_view, 16> FOUR_BYTE_NAMES{
    "read 13",      "fast read 0C",     "read 1-1-2 3C",     "read 1-2-2 BC",    "read 1-1-4 6C", "read 1-4-4 EC",
    "program 12",   "program 1-1-4 34", "program 1-4-4 3E",  "erase type 1",     "erase type 2",  "erase type 3",
    "erase type 4", "DTR read 0E",      "DTR read 1-2-2 BE", "DTR read 1-4-4 EE"};

constexpr unsigned FIRST_ERASE_BIT = 9;

}  // namespace

std::optional<SFDP::FOUR_BYTE_TABLE> read_four_byte_table(const SFDP_TABLE& table, SFDP_WARNINGS& warnings) {
    if (!table.has(2)) {
        warnings.push_back(table.name() + ": " + std::to_string(table.words.size()) +
                           " words, expected 2; it is not used");
        return std::nullopt;
    }
    SFDP::FOUR_BYTE_TABLE result;
    result.word1 = table.word(1);
    result.word2 = table.word(2);
    for (std::size_t bit = 0; bit < FOUR_BYTE_NAMES.size(); ++bit) {
        if ((result.word1 >> bit & 1) != 0) {
            result.support.emplace_back(FOUR_BYTE_NAMES[bit]);
        }
    }
    for (unsigned type = 1; type <= 4; ++type) {
        const auto opcode = static_cast<BYTE>(result.word2 >> 8 * (type - 1) & 0xFF);
        if ((result.word1 >> (FIRST_ERASE_BIT + type - 1) & 1) == 0) {
            continue;
        }
        if (opcode == 0x00 || opcode == 0xFF) {
            warnings.push_back(table.name() + " word 2: erase type " + std::to_string(type) + " has the opcode " +
                               sfdp_hex(opcode) + ", which erases nothing; it is not used");
            continue;
        }
        result.erase_opcodes.emplace_back(static_cast<BYTE>(type), opcode);
    }
    return result;
}

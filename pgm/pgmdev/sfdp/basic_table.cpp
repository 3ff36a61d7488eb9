#include <algorithm>
#include <array>
#include <string_view>

#include "sfdp/tables.h"

// The Basic Flash Parameter Table. How long it is, not its minor revision, says which words it has: chips exist whose
// revision promises more, or less.

namespace {

using SFDP = PGMDEV_FLASH_SFDP;
using BASIC = SFDP::BASIC_TABLE;

/// Which bit says that a way of reading exists, and which half of which word describes it.
struct READ_PLACE {
    std::string_view mode;
    std::size_t support_word;
    unsigned support_bit;
    std::size_t word;
    unsigned shift;  ///< 0 or 16
};

constexpr std::array READS{
    READ_PLACE{"1-1-2", 1, 16, 4, 0},      READ_PLACE{"1-2-2", 1, 20, 4, 16},     READ_PLACE{"1-1-4", 1, 22, 3, 16},
    READ_PLACE{"1-4-4", 1, 21, 3, 0},      READ_PLACE{"2-2-2", 5, 0, 6, 16},      READ_PLACE{"4-4-4", 5, 4, 7, 16},
    READ_PLACE{"1S-1D-1D", 21, 0, 22, 0},  READ_PLACE{"1S-2D-2D", 21, 1, 22, 16}, READ_PLACE{"1S-4D-4D", 21, 2, 23, 0},
    READ_PLACE{"4S-4D-4D", 21, 3, 23, 16},
};

/// Reading on eight lines has no bit of its own: an opcode says that it exists.
constexpr std::size_t OCTAL_WORD = 17;
struct OCTAL_READ {
    std::string_view mode;
    unsigned shift;
};
constexpr std::array OCTAL_READS{OCTAL_READ{"1-1-8", 16}, OCTAL_READ{"1-8-8", 0}};

struct NAMED_BIT {
    unsigned bit;
    std::string_view name;
};

constexpr std::array POLLING{NAMED_BIT{2, "05 bit 0"}, NAMED_BIT{3, "70 bit 7"}};

constexpr std::array SOFT_RESET{
    NAMED_BIT{8, "F on 4 lines, 8 clocks"},
    NAMED_BIT{9, "F on 4 lines, 10 clocks"},
    NAMED_BIT{10, "F on 4 lines, 16 clocks"},
    NAMED_BIT{11, "F0"},
    NAMED_BIT{12, "66 99"},
    NAMED_BIT{13, "leave 0-4-4 first"},
};

constexpr std::array EXIT_4BYTE{
    NAMED_BIT{14, "E9"},
    NAMED_BIT{15, "06 E9"},
    NAMED_BIT{16, "extended address register C8/C5"},
    NAMED_BIT{17, "bank register 16/17"},
    NAMED_BIT{18, "configuration register B5/B1"},
    NAMED_BIT{19, "hardware reset"},
    NAMED_BIT{20, "software reset"},
    NAMED_BIT{21, "power cycle"},
};

constexpr std::array ENTER_4BYTE{
    NAMED_BIT{24, "B7"},
    NAMED_BIT{25, "06 B7"},
    NAMED_BIT{26, "extended address register C8/C5"},
    NAMED_BIT{27, "bank register 16/17"},
    NAMED_BIT{28, "configuration register B5/B1"},
    NAMED_BIT{29, "4-byte instruction set"},
    NAMED_BIT{30, "always 4-byte"},
};

constexpr std::array<std::string_view, 8> QUAD_ENABLE_MEANINGS{
    "no quad enable bit",
    "status register 2 bit 1, 16-bit write (01), 8-bit write clears it",
    "status register 1 bit 6",
    "status register 2 bit 7, read 3F, write 3E",
    "status register 2 bit 1, 16-bit write (01)",
    "status register 2 bit 1, read 35, 16-bit write (01)",
    "status register 2 bit 1, read 35, write 31",
    "reserved",
};

template <std::size_t COUNT>
std::vector<std::string> names_of(DWORD word, const std::array<NAMED_BIT, COUNT>& bits) {
    std::vector<std::string> names;
    for (const NAMED_BIT& each : bits) {
        if ((word >> each.bit & 1) != 0) {
            names.emplace_back(each.name);
        }
    }
    return names;
}

std::string place_of(const SFDP_TABLE& table, std::size_t word) {
    return table.name() + " word " + std::to_string(word);
}

/// A count, and what it counts.
DWORD counted(DWORD count, DWORD unit) {
    return (count + 1) * unit;
}

SFDP::DURATION duration(DWORD typical, DWORD factor_code) {
    return {typical, typical * 2 * (factor_code + 1)};
}

SFDP::FAST_READ read_from(std::string_view mode, DWORD half) {
    return {std::string(mode), static_cast<BYTE>(sfdp_bits(half, 15, 8)), static_cast<BYTE>(sfdp_bits(half, 7, 5)),
            static_cast<BYTE>(sfdp_bits(half, 4, 0))};
}

void read_first_word(const SFDP_TABLE& table, BASIC& basic, SFDP_WARNINGS& warnings) {
    const DWORD word = table.word(1);
    const DWORD erase_code = sfdp_bits(word, 1, 0);
    basic.erase_4k_uniform = erase_code == 1;
    if (erase_code == 0 || erase_code == 2) {
        warnings.push_back(place_of(table, 1) + ": the code of erase sizes is " + std::to_string(erase_code) +
                           ", which is reserved; taken as no uniform 4 KiB erase");
    }
    const auto opcode = static_cast<BYTE>(sfdp_bits(word, 15, 8));
    if (opcode != 0xFF) {
        basic.erase_4k_opcode = opcode;
    }
    basic.write_granularity = sfdp_bits(word, 2, 2) != 0 ? 64 : 1;
    basic.address_code = static_cast<BYTE>(sfdp_bits(word, 18, 17));
    basic.dtr = sfdp_bits(word, 19, 19) != 0;
}

void read_density(const SFDP_TABLE& table, BASIC& basic, SFDP_WARNINGS& warnings) {
    const DWORD word = table.word(2);
    const DWORD number = sfdp_bits(word, 30, 0);
    if (sfdp_bits(word, 31, 31) == 0) {
        basic.density_bits = QWORD{number} + 1;
    } else if (number < 64) {
        basic.density_bits = QWORD{1} << number;
    } else {
        warnings.push_back(place_of(table, 2) + ": 2 to the power of " + std::to_string(number) +
                           " bits are more than any chip has, the size is not used");
    }
    if (basic.density_bits && *basic.density_bits % 8 != 0) {
        warnings.push_back(place_of(table, 2) + ": " + std::to_string(*basic.density_bits) +
                           " bits are no whole number of bytes");
    }
    constexpr QWORD REACH_OF_3_BYTES = QWORD{1} << 24;
    if (basic.address_code == 0 && basic.bytes() > REACH_OF_3_BYTES) {
        warnings.push_back(table.name() + ": " + std::to_string(basic.bytes()) + " bytes with 3-byte addresses only");
    }
}

void read_fast_reads(const SFDP_TABLE& table, BASIC& basic, SFDP_WARNINGS& warnings) {
    const auto add = [&](const SFDP::FAST_READ& read, std::size_t word) {
        if (read.opcode == 0x00 || read.opcode == 0xFF) {
            warnings.push_back(place_of(table, word) + ": read " + read.mode + " has the opcode " +
                               sfdp_hex(read.opcode) + ", which no read has");
        }
        basic.fast_reads.push_back(read);
    };
    for (const READ_PLACE& place : READS) {
        if (table.has(place.support_word) && table.has(place.word) &&
            (table.word(place.support_word) >> place.support_bit & 1) != 0) {
            add(read_from(place.mode, table.word(place.word) >> place.shift), place.word);
        }
    }
    for (const OCTAL_READ& octal : OCTAL_READS) {
        if (table.has(OCTAL_WORD)) {
            const SFDP::FAST_READ read = read_from(octal.mode, table.word(OCTAL_WORD) >> octal.shift);
            if (read.opcode != 0x00 && read.opcode != 0xFF) {
                basic.fast_reads.push_back(read);
            }
        }
    }
}

/// Word 10: where count and unit of an erase type's time stand.
std::optional<SFDP::DURATION> erase_time(const SFDP_TABLE& table, unsigned number) {
    constexpr std::array<DWORD, 4> UNITS_MS{1, 16, 128, 1000};
    if (!table.has(10)) {
        return std::nullopt;
    }
    const DWORD word = table.word(10);
    const unsigned low = 4 + 7 * (number - 1);
    const DWORD typical = counted(sfdp_bits(word, low + 4, low), UNITS_MS[sfdp_bits(word, low + 6, low + 5)]);
    return duration(typical, sfdp_bits(word, 3, 0));
}

/// Why an erase type is not used; "": it is.
std::string erase_obstacle(DWORD exponent, DWORD opcode, const BASIC& basic) {
    if (opcode == 0x00 || opcode == 0xFF) {
        return "has the opcode " + sfdp_hex(opcode) + ", which erases nothing";
    }
    if (exponent > 31 || (basic.bytes() != 0 && QWORD{1} << exponent > basic.bytes())) {
        return "would erase 2 to the power of " + std::to_string(exponent) + " bytes, more than the chip has";
    }
    return "";
}

void read_erase_types(const SFDP_TABLE& table, BASIC& basic, SFDP_WARNINGS& warnings) {
    for (unsigned number = 1; number <= 4; ++number) {
        const std::size_t word = number <= 2 ? 8 : 9;
        const DWORD half = table.word(word) >> (number % 2 == 1 ? 0 : 16);
        const DWORD exponent = sfdp_bits(half, 7, 0);
        const DWORD opcode = sfdp_bits(half, 15, 8);
        if (exponent == 0) {
            continue;  // it does not exist
        }
        const std::string obstacle = erase_obstacle(exponent, opcode, basic);
        if (!obstacle.empty()) {
            warnings.push_back(place_of(table, word) + ": erase type " + std::to_string(number) + " " + obstacle +
                               "; it is not used");
            continue;
        }
        basic.erase_types.push_back({static_cast<BYTE>(number), DWORD{1} << exponent, static_cast<BYTE>(opcode),
                                     erase_time(table, number), std::nullopt});
    }
}

void read_program_times(DWORD word, BASIC& basic) {
    constexpr std::array<DWORD, 2> PAGE_UNITS_US{8, 64};
    constexpr std::array<DWORD, 2> BYTE_UNITS_US{1, 8};
    constexpr std::array<DWORD, 4> CHIP_UNITS_MS{16, 256, 4000, 64000};
    const DWORD factor = sfdp_bits(word, 3, 0);
    const auto time = [word, factor](unsigned high, unsigned low, DWORD unit) {
        return duration(counted(sfdp_bits(word, high, low), unit), factor);
    };
    basic.page_bytes = DWORD{1} << sfdp_bits(word, 7, 4);
    basic.page_program_us = time(12, 8, PAGE_UNITS_US[sfdp_bits(word, 13, 13)]);
    basic.first_byte_us = time(17, 14, BYTE_UNITS_US[sfdp_bits(word, 18, 18)]);
    basic.next_byte_us = time(22, 19, BYTE_UNITS_US[sfdp_bits(word, 23, 23)]);
    basic.chip_erase_ms = time(28, 24, CHIP_UNITS_MS[sfdp_bits(word, 30, 29)]);
}

/// Word 16. Chips with 3-byte addresses only leave all bits of it set.
void read_modes(const SFDP_TABLE& table, BASIC& basic, SFDP_WARNINGS& warnings) {
    const DWORD word = table.word(16);
    basic.soft_reset = names_of(word, SOFT_RESET);
    basic.enter_4byte = names_of(word, ENTER_4BYTE);
    basic.exit_4byte = names_of(word, EXIT_4BYTE);
    const bool every_way_in = basic.enter_4byte->size() == ENTER_4BYTE.size();
    const bool every_way_out = basic.exit_4byte->size() == EXIT_4BYTE.size();
    if (every_way_in) {
        warnings.push_back(place_of(table, 16) + ": every way into 4-byte mode is set, none believed");
        basic.enter_4byte->clear();
    } else if (every_way_out) {
        warnings.push_back(place_of(table, 16) + ": every way out of 4-byte mode is set, none believed");
    }
    if (every_way_out) {
        basic.exit_4byte->clear();
    }
}

}  // namespace

bool PGMDEV_FLASH_SFDP::polls_flag_status() const {
    const auto& polling = m_basic.status_polling;
    return polling && std::find(polling->begin(), polling->end(), POLLING[1].name) != polling->end();
}

SFDP::BASIC_TABLE read_basic_table(const SFDP_TABLE& table, SFDP_WARNINGS& warnings) {
    BASIC basic;
    basic.header = table.header;
    read_first_word(table, basic, warnings);
    read_density(table, basic, warnings);
    read_fast_reads(table, basic, warnings);
    read_erase_types(table, basic, warnings);
    if (table.has(11)) {
        read_program_times(table.word(11), basic);
    }
    if (table.has(14)) {
        basic.status_polling = names_of(table.word(14), POLLING);
    }
    if (table.has(15)) {
        const DWORD code = sfdp_bits(table.word(15), 22, 20);
        basic.quad_enable = {static_cast<BYTE>(code), std::string(QUAD_ENABLE_MEANINGS[code])};
    }
    if (table.has(16)) {
        read_modes(table, basic, warnings);
    }
    return basic;
}

#pragma once

/// \file
/// What a serial flash says of itself: the Serial Flash Discoverable Parameters (JEDEC standard JESD216), which it
/// answers to the opcode 5Ah from address 0. Linux shows the same bytes as /sys/bus/spi/devices/*/spi-nor/sfdp.
///
/// Tables and double words ("words") are counted as the standard counts them, from 1.

#include <optional>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "pgmdev_export.h"
#include "pgmdev_sfl_flash_info.h"
#include "pgmdev_types.h"

class PGMDEV_EXPORT PGMDEV_FLASH_SFDP {
public:
    // Tables with an assigned number.
    static constexpr WORD BASIC_ID = 0xFF00;       ///< Basic Flash Parameter Table
    static constexpr WORD SECTOR_MAP_ID = 0xFF81;  ///< Sector Map Parameter Table
    static constexpr WORD FOUR_BYTE_ID = 0xFF84;   ///< 4-Byte Address Instruction Table

    /// A parameter header (JESD216, "Parameter Headers", words 1 and 2 of each).
    struct HEADER {
        WORD id = 0;       ///< word 2 bits 31:24, word 1 bits 7:0
        BYTE major = 0;    ///< word 1 bits 23:16
        BYTE minor = 0;    ///< word 1 bits 15:8
        BYTE words = 0;    ///< length of the table: word 1 bits 31:24
        DWORD offset = 0;  ///< of the table, in bytes: word 2 bits 23:0
    };

    /// How long an operation takes. The standard has one factor, 2 to 32, between the two.
    struct DURATION {
        DWORD typical = 0;
        DWORD longest = 0;
    };

    /// A way of reading (basic table, words 1, 3 to 7, 17 and 21 to 23).
    struct FAST_READ {
        std::string mode;  ///< lines for opcode, address and data: "1-4-4"; with edges: "1S-4D-4D"
        BYTE opcode = 0;
        BYTE mode_clocks = 0;
        BYTE wait_clocks = 0;
    };

    /// An erase type (basic table, words 8 and 9, of times 10; opcode_4byte: 4-byte table, words 1 and 2).
    struct ERASE_TYPE {
        BYTE number = 0;  ///< 1 to 4
        DWORD bytes = 0;
        BYTE opcode = 0;
        std::optional<DURATION> ms;        ///< none: the table has no word 10
        std::optional<BYTE> opcode_4byte;  ///< that takes 4-byte addresses in any mode
    };

    /// How the four data lines are switched on (basic table, word 15 bits 22:20).
    struct QUAD_ENABLE {
        BYTE code = 0;
        std::string meaning;
    };

    /// The Basic Flash Parameter Table that is used. What begins with std::optional is unknown where the table is too
    /// short to have the word.
    struct BASIC_TABLE {
        HEADER header;
        std::optional<QWORD> density_bits;  ///< word 2; none: more bits than can be counted
        BYTE address_code = 0;  ///< word 1 bits 18:17: addresses of 3 bytes (0), 3 or 4 (1), 4 (2), reserved (3)
        bool erase_4k_uniform = false;        ///< word 1 bits 1:0
        std::optional<BYTE> erase_4k_opcode;  ///< word 1 bits 15:8; none: FF
        BYTE write_granularity = 0;           ///< word 1 bit 2: 1 byte, or 64 bytes and more
        bool dtr = false;                     ///< word 1 bit 19: some read on both edges
        std::vector<FAST_READ> fast_reads;
        std::vector<ERASE_TYPE> erase_types;                     ///< by number
        std::optional<DWORD> page_bytes;                         ///< word 11 bits 7:4
        std::optional<DURATION> page_program_us;                 ///< word 11 bits 13:8 and 3:0
        std::optional<DURATION> first_byte_us;                   ///< word 11 bits 18:14 and 3:0
        std::optional<DURATION> next_byte_us;                    ///< word 11 bits 23:19 and 3:0
        std::optional<DURATION> chip_erase_ms;                   ///< word 11 bits 30:24 and 3:0; of one die
        std::optional<std::vector<std::string>> status_polling;  ///< word 14 bits 3:2: "05 bit 0", "70 bit 7"
        std::optional<QUAD_ENABLE> quad_enable;                  ///< word 15
        std::optional<std::vector<std::string>> soft_reset;      ///< word 16 bits 13:8
        std::optional<std::vector<std::string>> exit_4byte;      ///< word 16 bits 23:14
        std::optional<std::vector<std::string>> enter_4byte;     ///< word 16 bits 31:24

        DWORD page_size() const noexcept { return page_bytes.value_or(256); }  ///< all chips without word 11 have 256
        QWORD bytes() const noexcept { return density_bits.value_or(0) / 8; }
    };

    /// The 4-Byte Address Instruction Table.
    struct FOUR_BYTE_TABLE {
        DWORD word1 = 0;
        DWORD word2 = 0;
        std::vector<std::string> support;                  ///< word 1 bits 15:0, by name and opcode
        std::vector<std::pair<BYTE, BYTE>> erase_opcodes;  ///< word 2: erase type, opcode
    };

    /// A read that tells which sector map is in use (sector map table, configuration detection command descriptor). Each
    /// gives one bit of the map's number, the first one the highest.
    struct MAP_COMMAND {
        BYTE opcode = 0;                    ///< word 1 bits 15:8
        std::optional<BYTE> address_bytes;  ///< word 1 bits 23:22; none: as many as the chip is set to
        DWORD address = 0;                  ///< word 2
        std::optional<BYTE> wait_clocks;    ///< word 1 bits 19:16; none: as many as the chip is set to
        BYTE mask = 0;                      ///< of the byte that is read: word 1 bits 31:24
    };

    /// A range of sectors that are alike (sector map table, configuration map descriptor, words 2 and on).
    struct REGION {
        QWORD offset = 0;
        QWORD bytes = 0;                ///< bits 31:8
        std::vector<BYTE> erase_types;  ///< bits 3:0: numbers of those that may be used in it
    };

    struct SECTOR_MAP {
        BYTE id = 0;  ///< word 1 bits 15:8
        std::vector<REGION> regions;
    };

    /// Why nothing can be read: what stands where.
    struct REFUSAL {
        DWORD offset = 0;  ///< of the first byte that is wrong or missing
        std::string field;
        std::string found;
        std::string expected;
    };

    /// The record of a flash, as far as its own words give one.
    struct DERIVED_RECORD {
        PGMDEV_SFL_FLASH_INFO record;
        std::vector<std::pair<std::string, std::string>> assumed;  ///< members that nothing tells, and what was taken
        std::string obstacle;  ///< why there is no record, a clause for people; "": there is one
    };

    /// Reads a dump from its first byte on. Every byte is looked for before it is read, and nothing is reported: what
    /// keeps the whole from being read is the refusal, what keeps a part from being used is a warning.
    static PGMDEV_FLASH_SFDP from_bytes(std::span<const BYTE> bytes);

    /// One line of text for people.
    static std::string describe(const REFUSAL& refusal);

    /// What a table is called: "basic", "sector map", "4-byte instructions" ...; "vendor" unless it has an assigned
    /// number.
    static std::string table_name(WORD id);

    /// "3", "3 or 4", "4", "reserved".
    static std::string address_text(BYTE address_code);

    const std::optional<REFUSAL>& refusal() const noexcept { return m_refusal; }

    /// What was odd, and how it was taken.
    const std::vector<std::string>& warnings() const noexcept { return m_warnings; }

    // Of a dump that is not refused.
    BYTE major() const noexcept { return m_major; }                      ///< SFDP header, word 2 bits 15:8
    BYTE minor() const noexcept { return m_minor; }                      ///< SFDP header, word 2 bits 7:0
    BYTE access_protocol() const noexcept { return m_access_protocol; }  ///< SFDP header, word 2 bits 31:24
    std::string standard() const;  ///< "JESD216", "JESD216A" ..., by the minor revision

    /// As many as the SFDP header counts (word 2 bits 23:16, where 0 is one), or fewer where the dump ends before.
    const std::vector<HEADER>& headers() const noexcept { return m_headers; }

    const BASIC_TABLE& basic() const noexcept { return m_basic; }
    const std::optional<FOUR_BYTE_TABLE>& four_byte() const noexcept { return m_four_byte; }
    const std::vector<MAP_COMMAND>& map_commands() const noexcept { return m_map_commands; }

    /// Whether the flag status register (opcode 70) tells when it is ready: word 14 bit 3.
    bool polls_flag_status() const;

    /// All maps that the chip may have; with map_commands, only the chip knows which of them is in use.
    const std::vector<SECTOR_MAP>& sector_maps() const noexcept { return m_sector_maps; }
    bool hybrid() const noexcept;  ///< whether a map has more than one region

    /// The erase type by which a tool erases sector by sector: of those that may be used in every region, or else of all,
    /// the largest with the opcode D8, or else the largest. Null: there is none.
    const ERASE_TYPE* sector_erase() const noexcept;

    /// The record that follows, for a flash that answers `id` (maker, type and capacity byte; fewer are taken as 0). Its
    /// times are the longest ones.
    DERIVED_RECORD record(std::span<const BYTE> id) const;

private:
    PGMDEV_FLASH_SFDP() = default;

    std::optional<REFUSAL> m_refusal;
    std::vector<std::string> m_warnings;
    BYTE m_major = 0;
    BYTE m_minor = 0;
    BYTE m_access_protocol = 0;
    std::vector<HEADER> m_headers;
    BASIC_TABLE m_basic;
    std::optional<FOUR_BYTE_TABLE> m_four_byte;
    std::vector<MAP_COMMAND> m_map_commands;
    std::vector<SECTOR_MAP> m_sector_maps;
};

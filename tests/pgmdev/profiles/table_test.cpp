#include <gtest/gtest.h>

#include <algorithm>

#include "pgmdev/profiles/fixture.h"
#include "pgmdev_dev_info_table.h"
#include "support/reports.h"
#include "support/scratch.h"
#include "support/settings.h"

// The table as its maintainers see it: all faults at once, and rows checked as rows.

namespace {

namespace ref = dev_info_reference;
using ref::CELLS;
using PLACES = std::vector<std::string>;
using SEVERITY = PGMDEV_TABLE_FAULT::SEVERITY;

std::size_t column_of(const std::string& name) {
    std::size_t column = 0;
    while (ref::COLUMNS[column].name != name) {
        ++column;
    }
    return column;
}

class DevInfoTable : public testing::Test {
protected:
    DevInfoTable() : m_installation(m_scratch.path("install")) {
        m_rows = ref::rows();
        for (CELLS& row : m_rows) {
            row[column_of("flash_width_bits")] = "4";
        }
        m_scratch.write("install/h/pgm_parts.txt",
                        "a b c d e f file_a\na b c d e f FILE_B\na b c d e f FILE_C\na b c d e f FILE_D\n");
    }
    PGMDEV_DEV_INFO_TABLE check(const std::string& text) {
        return PGMDEV_DEV_INFO_TABLE::from_source(m_scratch.write("source.csv", text));
    }
    PGMDEV_DEV_INFO_TABLE check() { return check(ref::source(m_rows)); }

    /// "line:member:fault" or "line:member:warning" of everything found.
    static PLACES found(const PGMDEV_DEV_INFO_TABLE& table) {
        PLACES places;
        for (const PGMDEV_TABLE_FAULT& fault : table.faults()) {
            places.push_back(std::to_string(fault.line) + ":" + fault.member +
                             (fault.severity == SEVERITY::FAULT ? ":fault" : ":warning"));
        }
        return places;
    }

    /// What is expected in the place of each.
    static PLACES expected(const PGMDEV_DEV_INFO_TABLE& table) {
        PLACES texts;
        for (const PGMDEV_TABLE_FAULT& fault : table.faults()) {
            texts.push_back(fault.expected);
        }
        return texts;
    }

    SCRATCH m_scratch;
    INSTALL_DIRECTORY m_installation;
    std::vector<CELLS> m_rows;
};

TEST_F(DevInfoTable, WithoutFault) {
    const PGMDEV_DEV_INFO_TABLE table = check();
    EXPECT_EQ(found(table), PLACES{});
    EXPECT_FALSE(table.has_faults());
    EXPECT_EQ(table.records().size(), 78U);
    EXPECT_EQ(table.records()[5].family, DEV_FAMILY_KESTREL);
    EXPECT_EQ(table.payload_size(), ref::records(m_rows).size() + ref::tables({}).size());
    EXPECT_TRUE(table.family_table().empty());
}

TEST_F(DevInfoTable, FindsAllFaultsOfTheFormatInLineOrder) {
    m_rows[0][column_of("support_fi")] = "yes";
    m_rows[1][ref::PCF] = "FILE_E";
    m_rows[2].pop_back();
    m_rows[3][column_of("dummy_byte")] = "x";
    m_rows[3][column_of("default_prog_mode")] = "AVST";
    m_rows[4][column_of("fi_program_twice")] = "TRUE";
    m_rows.pop_back();
    const PGMDEV_DEV_INFO_TABLE table = check(ref::source(m_rows) + std::string(10241, ' ') + "x\n");
    EXPECT_EQ(found(table), (PLACES{"3:support_fi:fault", "4::fault", "5::fault", "6:default_prog_mode:fault",
                                    "6:dummy_byte:fault", "7:fi_program_twice:warning", "80::fault", "80::fault"}));
    EXPECT_TRUE(table.has_faults());
    EXPECT_TRUE(table.records().empty());
    EXPECT_EQ(
        PGMDEV_DEV_INFO_TABLE::describe(table.faults()[0], "t.csv"),
        "t.csv:3:" + std::to_string(table.faults()[0].column) +
            ": fault: row family AVOCET: member support_fi: found \"yes\", expected TRUE or FALSE [string == \"\" "
            "|| string == \"FALSE\" || string == \"TRUE\"]");
    EXPECT_EQ(
        PGMDEV_DEV_INFO_TABLE::describe(table.faults()[1], "t.csv"),
        "t.csv:4: fault: row family BITTERN pcf FILE_E: expected one of family, pcf, device and part, this row has "
        "2 [device_count == TOTAL_DATABASE_DEVICE]");
    EXPECT_EQ(table.faults()[5].expected, "without effect: support_fi is FALSE");
    const std::string line = ref::joined(m_rows[0]);
    EXPECT_EQ(line.substr(table.faults()[0].column - 1, 4), "yes,");
}

TEST_F(DevInfoTable, TellsWhatEachKindOfCellTakes) {
    m_rows[0][ref::FAMILY] = "nobody";
    m_rows[1][column_of("dummy_byte")] = "x";
    m_rows[2][column_of("dummy_word")] = "x";
    m_rows[3][column_of("dummy_dword")] = "x";
    m_rows[4][column_of("default_prog_mode")] = "x";
    m_rows.pop_back();
    const PGMDEV_DEV_INFO_TABLE table = check(ref::source(m_rows) + std::string(10241, ' ') + "x\n");
    const PLACES texts = expected(table);
    ASSERT_GE(texts.size(), 5U);
    EXPECT_EQ(PLACES(texts.begin(), texts.begin() + 5),
              (PLACES{"the name of a family in capitals; GENERIC for a device or part; or nothing",
                      "a number: decimal, or hexadecimal after 0x; 0 to 255 fit",
                      "a number: decimal, or hexadecimal after 0x; 0 to 65535 fit",
                      "a number: decimal, or hexadecimal after 0x, up to 0xFFFFFFFF",
                      "the name of an enumerator, or nothing"}));
    EXPECT_NE(std::find(texts.begin(), texts.end(), "at most 10240 characters, this line has 10242"), texts.end());
}

TEST_F(DevInfoTable, TellsWhyRecordsAreNoSourceTable) {
    const auto obstacle = [this](const std::vector<CELLS>& rows) {
        std::string text;
        const std::string path = m_scratch.write("x.pcf", ref::file(ref::records(rows) + ref::tables({})));
        EXPECT_EQ(PGMDEV_DEV_INFO_TABLE::from_database(path).source_text(text), "");
        return text;
    };
    EXPECT_EQ(obstacle({m_rows[0]}), "1 records cannot be a source table, which has 78");
    m_rows[5][ref::PCF] = "FILE_A";
    EXPECT_EQ(obstacle(m_rows), "record 5 has 2 keys: a source table takes one");
    m_rows[4][column_of("dummy_string")] = "a b";
    EXPECT_EQ(obstacle(m_rows), "record 4: dummy_string \"a b\" cannot be a cell of a source table");
}

TEST_F(DevInfoTable, FilesThatAreNoTables) {
    const PGMDEV_DEV_INFO_TABLE missing = PGMDEV_DEV_INFO_TABLE::from_source(m_scratch.path("missing"));
    EXPECT_EQ(found(missing), PLACES{"0::fault"});
    EXPECT_EQ(missing.faults()[0].expected, "a file that can be read");
    EXPECT_EQ(found(check("")), PLACES{"0::fault"});
    m_rows.pop_back();
    EXPECT_EQ(check().faults().at(0).expected, "two header rows and 78 data rows, found 77 data rows");
}

TEST_F(DevInfoTable, ValuesThatContradictEachOther) {
    m_rows[0][column_of("support_asc_ini")] = "SWITCH";
    m_rows[1][column_of("cmp_fbgen_start_block")] = "NPCF_BLOCK_CRAM";
    m_rows[2][column_of("aes_n_fuse_bits")] = "512";
    m_rows[2][column_of("aes_fuse_bit_location")] = "257";
    m_rows[2][column_of("aes_n_nv_key_bits")] = "256";
    m_rows[3][column_of("flash_width_bits")] = "5";
    m_rows[4][column_of("dummy_byte")] = "256";
    m_rows[4][column_of("dummy_word")] = "65536";
    m_rows[6][column_of("dummy_string")] = std::string(256, 'x');
    const PGMDEV_DEV_INFO_TABLE table = check();
    EXPECT_EQ(found(table), (PLACES{"3:support_asc_ini:warning", "4:cmp_fbgen_end_block:warning",
                                    "5:aes_fuse_bit_location:warning", "6:flash_width_bits:warning",
                                    "7:dummy_byte:fault", "7:dummy_word:fault", "9:dummy_string:fault"}));
    EXPECT_EQ(expected(table), (PLACES{"a switch without effect: support_asc is FALSE",
                                       "compressed blocks have a first and a last one, or neither",
                                       "the key reaches beyond the fuse register (aes_n_fuse_bits)",
                                       "unusual: 0, 1, 4, 8 or 16 data lines are",
                                       "a number that fits, 0 to 255: of this one only the low bits would be stored",
                                       "a number that fits, 0 to 65535: of this one only the low bits would be stored",
                                       "a text of at most 255 characters"}));
}

TEST_F(DevInfoTable, ValuesThatJustFit) {
    m_rows[2][column_of("aes_n_fuse_bits")] = "512";
    m_rows[2][column_of("aes_fuse_bit_location")] = "256";
    m_rows[2][column_of("aes_n_nv_key_bits")] = "256";
    m_rows[4][column_of("dummy_byte")] = "255";
    m_rows[4][column_of("dummy_word")] = "65535";
    m_rows[6][column_of("dummy_string")] = std::string(255, 'x');
    m_rows[7][column_of("jtag_program_initialize_microsec")] = "10";
    m_rows[8][column_of("as_minimum_flash_density")] = "65536";
    m_rows[9][column_of("cmf_flash_block_size")] = "256";
    EXPECT_EQ(found(check()), PLACES{});
}

TEST_F(DevInfoTable, ValuesInAnotherUnit) {
    m_rows[0][column_of("jtag_program_initialize_microsec")] = "9";
    m_rows[1][column_of("as_minimum_flash_density")] = "65537";
    m_rows[2][column_of("cmf_flash_block_size")] = "255";
    m_rows[3][column_of("asc_voltage")] = "3.3";
    const PGMDEV_DEV_INFO_TABLE table = check();
    EXPECT_EQ(found(table), (PLACES{"3:jtag_program_initialize_microsec:warning", "4:as_minimum_flash_density:warning",
                                    "5:cmf_flash_block_size:warning", "6:asc_voltage:warning"}));
    EXPECT_EQ(expected(table),
              (PLACES{"looks like milliseconds: microseconds are meant", "unusual: Mbit are meant, not bits or bytes",
                      "unusual: bytes are meant, and a block of 64 Kbyte has 65536",
                      "unusual: a number of volts and V, such as 3.3V, or nothing is"}));
}

TEST_F(DevInfoTable, KeysThatReachNothing) {
    m_rows[75][ref::PCF] = "File_A";
    m_rows[76][ref::PCF] = "NOBODY";
    m_rows[16] = ref::bare(ref::FAMILY, "AVOCET");
    const PGMDEV_DEV_INFO_TABLE table = check();
    EXPECT_EQ(found(table), (PLACES{"0::warning", "19:family:warning", "78:pcf:warning", "79:pcf:warning"}));
    EXPECT_EQ(
        table.faults()[0].expected,
        "family CORNCRAKE has no row: record 1 governs it, the row of family BITTERN (the row of the family GENERIC "
        "belongs there)");
    EXPECT_EQ(table.faults()[1].expected, "never reached: line 3 has the same key");
    EXPECT_EQ(table.faults()[3].expected, "no device of the part list has this programmer file");
    EXPECT_FALSE(table.has_faults());
}

TEST_F(DevInfoTable, TheGenericFamilyAndThePartListAreNeeded) {
    m_rows[71] = ref::bare(ref::PCF, "FILE_A");
    m_rows[74] = ref::bare(ref::PCF, "FILE_B");
    m_rows[75] = ref::bare(ref::PCF, "FILE_C");
    m_rows[76] = ref::bare(ref::PCF, "FILE_D");
    m_rows[77] = ref::bare(ref::PCF, "FILE_E");
    const PGMDEV_DEV_INFO_TABLE without = check();
    EXPECT_EQ(without.faults().at(0).condition, "DEV_FAMILY_ENUM(i) != DEV_FAMILY_GENERIC");
    EXPECT_EQ(without.faults()[0].expected, "a row for the family GENERIC");
    std::filesystem::remove(m_scratch.path("install/h/pgm_parts.txt"));
    m_rows = ref::rows();
    const PGMDEV_DEV_INFO_TABLE table = check();
    ASSERT_EQ(found(table), PLACES{"0::fault"});
    EXPECT_EQ(table.faults()[0].condition, "status");
    EXPECT_EQ(table.faults()[0].expected, "a part list, h/pgm_parts.txt, in the installation directory");
}

TEST_F(DevInfoTable, PackedDatabasesGiveRecordsAndTables) {
    ref::TABLES tables;
    tables.family[6] = 5;
    tables.device[990] = 4;
    tables.part[1] = 77;
    const std::string body = ref::records(m_rows) + ref::tables(tables);
    const PGMDEV_DEV_INFO_TABLE table = PGMDEV_DEV_INFO_TABLE::from_database(m_scratch.write("x.pcf", ref::file(body)));
    ASSERT_EQ(table.records().size(), 78U);
    EXPECT_EQ(table.payload_size(), body.size());
    EXPECT_EQ(table.family_table().at(6), 5U);
    EXPECT_EQ(table.family_table().size(), 73U);
    EXPECT_EQ(table.device_table().at(990), 4U);
    EXPECT_EQ(table.part_table().at(1), 77U);
    EXPECT_EQ(table.part_table().size(), static_cast<std::size_t>(DEV_PART_MAX));
}

}  // namespace

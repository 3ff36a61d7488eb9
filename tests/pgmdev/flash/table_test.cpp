#include <gtest/gtest.h>

#include <algorithm>

#include "pgmdev/flash/fixture.h"
#include "pgmdev/flash/source_fixture.h"
#include "pgmdev_flash_table.h"
#include "support/reports.h"
#include "support/scratch.h"

// The table as its maintainers see it: all faults at once, and rows checked as rows.

namespace {

namespace ref = flash_reference;
using ref::CELLS;
using SEVERITY = PGMDEV_TABLE_FAULT::SEVERITY;

constexpr std::size_t DEVICE_NAME = ref::column_of("device_name"), SILICON = ref::column_of("silicon_id"),
                      ID = ref::column_of("memory_id"), ID_INDEX = ref::column_of("memory_id_index"),
                      TYPE = ref::column_of("memory_type"), TYPE_INDEX = ref::column_of("memory_type_index"),
                      MFC = ref::column_of("mfc_id"), MFC_INDEX = ref::column_of("mfc_id_index"),
                      DEFAULT = ref::column_of("default_dev"), INI = ref::column_of("ini"),
                      DIES = ref::column_of("die_count"), BITS = ref::column_of("device_bit_size"),
                      SECTOR = ref::column_of("device_sector_byte"), BYTE4 = ref::column_of("byte4_addressing"),
                      BULK = ref::column_of("bulk_erase_time"), SECTOR_TIME = ref::column_of("sec_erase_time"),
                      PROGRAM = ref::column_of("program_utime"), PROTECT = ref::column_of("protection_value"),
                      UNPROTECT = ref::column_of("unprotect_value"), DIVISION = ref::column_of("protection_division"),
                      BOTTOM = ref::column_of("bottom_value"), VOLTAGE = ref::column_of("asc_voltage");

CELLS chip(const std::string& name, const std::string& id) {
    return ref::row_with(ID, id, ref::row_with(DEVICE_NAME, name));
}

class FlashTable : public testing::Test {
protected:
    PGMDEV_FLASH_TABLE check(const std::string& text) {
        return PGMDEV_FLASH_TABLE::from_source(m_scratch.write("flash.csv", text));
    }
    PGMDEV_FLASH_TABLE check(const std::vector<CELLS>& rows) { return check(ref::table(rows)); }

    /// "line:member:fault" or "line:member:warning" of everything found.
    static std::vector<std::string> found(const PGMDEV_FLASH_TABLE& table) {
        std::vector<std::string> places;
        for (const PGMDEV_TABLE_FAULT& fault : table.faults()) {
            places.push_back(std::to_string(fault.line) + ":" + fault.member +
                             (fault.severity == SEVERITY::FAULT ? ":fault" : ":warning"));
        }
        return places;
    }
    using PLACES = std::vector<std::string>;

    SCRATCH m_scratch;
};

TEST_F(FlashTable, ATableWithoutFault) {
    const PGMDEV_FLASH_TABLE table = check({ref::data_row()});
    EXPECT_EQ(found(table), PLACES{});
    EXPECT_FALSE(table.has_faults());
    EXPECT_EQ(table.payload_size(), ref::data_row_payload_size());
    ASSERT_EQ(table.records().size(), 1U);
    EXPECT_EQ(table.records()[0].memory_type, 0xBA);
    EXPECT_TRUE(table.records()[0].flag_status);
}

TEST_F(FlashTable, ARowThatTakesThePlaceOfALostHeaderLineIsToldOf) {
    std::vector<std::string> lines = ref::header();
    lines.erase(lines.begin() + 7);
    lines.push_back(ref::joined(chip("LOST", "0x17"), ", "));
    lines.push_back(ref::joined(ref::data_row(), ", "));
    std::string text;
    for (const std::string& line : lines) {
        text += line + "\n";
    }
    const PGMDEV_FLASH_TABLE table = check(text);
    EXPECT_EQ(table.records().size(), 1U);
    ASSERT_EQ(found(table), PLACES{"8::warning"});
    EXPECT_EQ(PGMDEV_FLASH_TABLE::describe(table.faults()[0], "t.csv"),
              "t.csv:8: warning: row LOST: stands among the 8 lines of the header and is no record: a line above it is "
              "missing");
}

TEST_F(FlashTable, FindsAllFaultsOfTheFormatInLineOrder) {
    std::vector<std::string> lines = ref::header();
    lines[0] = ref::joined(ref::row_with(2, "BOOL", ref::type_row()));
    lines[1] = ref::joined(ref::row_with(4, "index", ref::row_with(3, "id", ref::name_row())));
    lines[5] = "short";
    lines.push_back(ref::joined(ref::row_with(SILICON, "no", ref::row_with(ID, "0xGG"))));
    lines.emplace_back("too, few");
    lines.push_back(ref::joined(ref::row_with(MFC, "256,257")));
    lines.push_back(ref::joined(ref::row_with(PROGRAM, "5ms")));
    std::string text;
    for (const std::string& line : lines) {
        text += line + "\n";
    }
    const PGMDEV_FLASH_TABLE table = check(text);
    EXPECT_EQ(found(table),
              (PLACES{"1:silicon_id:fault", "2:memory_id:fault", "2:memory_id_index:fault", "6::fault",
                      "9:silicon_id:fault", "9:memory_id:fault", "10::fault", "11::fault", "12:program_utime:fault"}));
    EXPECT_TRUE(table.records().empty());

    const PGMDEV_TABLE_FAULT& cell = table.faults()[5];
    EXPECT_EQ(cell.column, 15U);  // behind "Maker,CHIP,no,"
    EXPECT_EQ(cell.row, "CHIP");
    EXPECT_EQ(cell.cell, "0xGG");
    EXPECT_EQ(cell.condition, "Invalid string to integer conversion");
    EXPECT_EQ(cell.expected, "a number: decimal, or hexadecimal after 0x; 0 to 255 fit");
    const PGMDEV_TABLE_FAULT& count = table.faults()[6];
    EXPECT_EQ(count.condition, "DWORD(svec.size()) == TOTAL_DATABASE_MEMBER");
    EXPECT_EQ(count.expected, std::to_string(flash_reference::MEMBERS) +
                                  " cells, this line has 2 (cells end at blanks, tabs and commas)");
    EXPECT_EQ(table.faults()[8].expected, "a number: decimal, or hexadecimal after 0x, up to 0xFFFFFFFF");
    EXPECT_EQ(table.faults()[7].expected, std::to_string(flash_reference::MEMBERS) + " cells, this line has " +
                                              std::to_string(flash_reference::MEMBERS + 1) +
                                              " (cells end at blanks, tabs and commas)");
    EXPECT_EQ(table.faults()[0].expected, "the type bool");
    EXPECT_EQ(table.faults()[1].expected, "the member name memory_id");
}

TEST_F(FlashTable, ColumnsCountFromTheBeginningOfTheLine) {
    std::vector<std::string> lines = ref::header();
    lines.push_back("  " + ref::joined(ref::row_with(SILICON, "no"), ", "));
    std::string text;
    for (const std::string& line : lines) {
        text += line + "\r\n";
    }
    const PGMDEV_FLASH_TABLE table = check(text);
    ASSERT_EQ(table.faults().size(), 1U);
    EXPECT_EQ(table.faults()[0].column, 16U);  // two blanks, "Maker, ", "CHIP, "
}

TEST_F(FlashTable, AFileThatCannotBeReadIsAFault) {
    const PGMDEV_FLASH_TABLE table = PGMDEV_FLASH_TABLE::from_source(m_scratch.path("missing.csv"));
    ASSERT_EQ(table.faults().size(), 1U);
    EXPECT_EQ(PGMDEV_FLASH_TABLE::describe(table.faults()[0], "missing.csv"),
              "missing.csv: fault: expected a file that can be read [status && device_count > 0]");
    EXPECT_EQ(check(std::vector<CELLS>{}).faults()[0].expected, "eight header lines and at least one data row");
}

TEST_F(FlashTable, OfVeryManyFindingsTheFirstAreListed) {
    const auto with_short_lines = [this](std::size_t count) {
        std::string text = ref::table({});
        for (std::size_t i = 0; i < count; ++i) {
            text += "a\n";
        }
        return check(text);
    };
    EXPECT_EQ(with_short_lines(10000).faults().size(), 10000U);
    const PGMDEV_FLASH_TABLE table = with_short_lines(10002);
    ASSERT_EQ(table.faults().size(), 10001U);
    EXPECT_EQ(table.faults()[9999].line, 8U + 10000U);
    EXPECT_EQ(PGMDEV_FLASH_TABLE::describe(table.faults()[10000], "flash.csv"),
              "flash.csv: fault: expected fewer findings: of 10002, the first 10000 are listed");
}

TEST_F(FlashTable, AFaultBehindTheFindingsThatAreListedIsNotLost) {
    // Each row is remarkable by itself, and all but the first also since the row before it answers first.
    const CELLS beyond = ref::row_with(BITS, "268435456");
    std::vector<CELLS> rows(10000, ref::row_with(DEFAULT, "FALSE", beyond));
    rows.front() = beyond;
    const PGMDEV_FLASH_TABLE remarkable = check(rows);
    ASSERT_EQ(remarkable.faults().size(), 10001U);
    EXPECT_FALSE(remarkable.has_faults());
    EXPECT_EQ(PGMDEV_FLASH_TABLE::describe(remarkable.faults()[10000], "flash.csv"),
              "flash.csv: warning: of 19999, the first 10000 are listed");
    EXPECT_EQ(remarkable.records().size(), 10000U);

    rows.push_back(ref::row_with(DEFAULT, "FALSE", ref::row_with(SECTOR, "0")));
    const PGMDEV_FLASH_TABLE faulty = check(rows);
    ASSERT_EQ(faulty.faults().size(), 10001U);
    EXPECT_EQ(faulty.faults()[9999].severity, SEVERITY::WARNING);
    EXPECT_EQ(faulty.faults()[10000].severity, SEVERITY::FAULT);
    EXPECT_TRUE(faulty.has_faults());
}

TEST_F(FlashTable, OfALongCellTheBeginningIsTold) {
    const auto told_of = [this](std::size_t length) {
        const std::string text(length, 'x');
        return check({ref::row_with(SILICON, text, ref::row_with(DEVICE_NAME, text))}).faults().at(0);
    };
    EXPECT_EQ(told_of(1000).cell, std::string(1000, 'x'));
    EXPECT_EQ(told_of(1000).row, std::string(1000, 'x'));
    EXPECT_EQ(told_of(1001).cell, std::string(1000, 'x') + "...");
    EXPECT_EQ(told_of(1001).row, std::string(1000, 'x') + "...");
}

TEST_F(FlashTable, ASectorDividesTheDevice) {
    const PGMDEV_FLASH_TABLE none = check({ref::row_with(BITS, "0")});
    EXPECT_EQ(found(none), PLACES{"9:device_bit_size:fault"});
    EXPECT_EQ(none.faults().at(0).expected, "a size above 0 bits");
    const PGMDEV_FLASH_TABLE odd = check({ref::row_with(SECTOR, "65535")});
    EXPECT_EQ(found(odd), PLACES{"9:device_sector_byte:fault"});
    EXPECT_EQ(odd.faults().at(0).expected, "a sector size that divides the device into whole sectors");
    EXPECT_EQ(found(check({ref::row_with(SECTOR, "0")})), PLACES{"9:device_sector_byte:fault"});
    EXPECT_EQ(found(check({ref::row_with(SECTOR, "33554432")})), PLACES{"9:device_sector_byte:fault"});
    EXPECT_EQ(found(check({ref::row_with(SECTOR, "16777216")})), PLACES{});
}

TEST_F(FlashTable, IndexesDoNotCollide) {
    const struct {
        std::size_t member;
        const char* cell;
        const char* other;
    } collisions[]{{TYPE_INDEX, "2", "memory_id_index"},
                   {MFC_INDEX, "2", "memory_id_index"},
                   {MFC_INDEX, "1", "memory_type_index"}};
    for (const auto& [member, cell, other] : collisions) {
        const PGMDEV_FLASH_TABLE table = check({ref::row_with(member, cell)});
        ASSERT_EQ(found(table), PLACES{"9:" + ref::name_row()[member] + ":fault"});
        EXPECT_EQ(table.faults()[0].expected, "another byte of the response than " + std::string(other) + " names");
    }
    EXPECT_EQ(found(check({ref::row_with(TYPE_INDEX, "255")})), PLACES{});
    const CELLS silicon = ref::row_with(SILICON, "TRUE", ref::row_with(ID_INDEX, "0"));
    EXPECT_EQ(found(check({silicon})), PLACES{});  // only its one byte is compared
}

TEST_F(FlashTable, EveryNameHasOneDefaultRow) {
    const auto second = [](const std::string& name, const std::string& is_default) {
        return ref::row_with(DEFAULT, is_default, chip(name, "0x19"));
    };
    EXPECT_EQ(found(check({ref::data_row(), second("chip", "FALSE")})), PLACES{});
    const PGMDEV_FLASH_TABLE two = check({ref::data_row(), second("chip", "TRUE")});
    EXPECT_EQ(found(two), PLACES{"10:default_dev:fault"});
    EXPECT_EQ(two.faults()[0].condition, "!one_default");
    EXPECT_EQ(two.faults()[0].expected, "FALSE: line 9 is the default row of this name");
    EXPECT_EQ(two.records().size(), 2U);  // the format is right
    const PGMDEV_FLASH_TABLE none = check({ref::data_row(), second("OTHER", "FALSE")});
    EXPECT_EQ(found(none), PLACES{"10:default_dev:fault"});
    const CELLS third = ref::row_with(ID, "0x1A", second("other", "FALSE"));
    EXPECT_EQ(found(check({ref::data_row(), second("OTHER", "FALSE"), third})), PLACES{"10:default_dev:fault"});
    EXPECT_EQ(none.faults()[0].condition, "one_default");
    EXPECT_EQ(none.faults()[0].expected, "TRUE in one row of this name: it has no default row");
}

TEST_F(FlashTable, ADefaultRowIsEnabledWithTheRowsThatNeedIt) {
    const CELLS locked = ref::row_with(INI, "LOCKED");
    const CELLS other = ref::row_with(DEFAULT, "FALSE", chip("CHIP", "0x19"));
    const PGMDEV_FLASH_TABLE alone = check({locked, other});
    EXPECT_EQ(found(alone), PLACES{"10:ini:fault"});
    EXPECT_EQ(alone.faults().at(0).condition, "one_default");
    EXPECT_EQ(alone.faults().at(0).expected,
              "LOCKED, as in line 9: without that switch this row is enabled, but its default row is not");
    EXPECT_EQ(found(check({locked, ref::row_with(INI, "LOCKED", other)})), PLACES{});
    EXPECT_EQ(found(check({ref::data_row(), ref::row_with(INI, "LOCKED", other)})), PLACES{});
}

TEST_F(FlashTable, ARowThatAnEarlierOneAlwaysBeatsIsAWarning) {
    const PGMDEV_FLASH_TABLE table = check({ref::data_row(), chip("OTHER", "0x18")});
    EXPECT_EQ(found(table), PLACES{"10:memory_id:warning"});
    EXPECT_FALSE(table.has_faults());
    EXPECT_EQ(table.faults()[0].expected,
              "no response reaches this row: CHIP in line 9 always wins; only its name finds it");
    // A wildcard beats every type; a more specific row beats nothing.
    const CELLS any = ref::row_with(TYPE_INDEX, "255");
    EXPECT_EQ(found(check({any, chip("OTHER", "0x18")})), PLACES{"10:memory_id:warning"});
    EXPECT_EQ(found(check({chip("OTHER", "0x18"), any})), PLACES{});
    // So does one that compares the same byte twice, a fault of its own.
    const CELLS twice = ref::row_with(MFC, "0xBA", ref::row_with(MFC_INDEX, "1"));
    EXPECT_EQ(found(check({twice, chip("OTHER", "0x18")})), (PLACES{"9:mfc_id_index:fault", "10:memory_id:warning"}));
    // A row that may be switched off, or that is of the other kind, beats none.
    EXPECT_EQ(found(check({ref::row_with(INI, "X"), chip("OTHER", "0x18")})), PLACES{});
    EXPECT_EQ(found(check({ref::row_with(INI, "X"), ref::row_with(INI, "X", chip("OTHER", "0x18"))})),
              PLACES{"10:memory_id:warning"});
    EXPECT_EQ(found(check({ref::row_with(SILICON, "TRUE"), chip("OTHER", "0x18")})), PLACES{});
    EXPECT_EQ(found(check({ref::row_with(SILICON, "TRUE"), ref::row_with(SILICON, "TRUE", chip("OTHER", "0x18"))})),
              PLACES{"10:memory_id:warning"});
}

TEST_F(FlashTable, UnusualValuesAreWarnings) {
    const char* const seconds = "unusual: 1 to 60 seconds are (seconds are meant, not milliseconds)";
    const char* const long_seconds = "unusual: 1 to 14400 seconds are (seconds are meant, not milliseconds)";
    const char* const microseconds = "unusual: 1 to 1000000 microseconds are";
    const char* const outside_mask = "has bits outside protection_mask";
    const char* const idle_maker = "an idle bus answers this manufacturer ID, too";
    const char* const no_wildcard = "255 is no wildcard here: byte 255 of the response is compared";
    const struct {
        std::size_t member;
        const char* cell;
        const char* expected;
    } unusual[]{
        {DIES, "0", "unusual: no die"},
        {BITS, "16777216", "looks like a size in bytes: bits are meant, eight times as many"},
        {SECTOR, "128", "unusual: bytes are meant, and a sector of 64 Kbyte has 65536"},
        {BULK, "0", long_seconds},
        {BULK, "14401", long_seconds},
        {SECTOR_TIME, "0", seconds},
        {SECTOR_TIME, "61", seconds},
        {PROGRAM, "0", microseconds},
        {PROGRAM, "1000001", microseconds},
        {PROGRAM, "9", "looks like milliseconds: microseconds are meant"},
        {PROTECT, "0x5D", outside_mask},
        {UNPROTECT, "0x80", outside_mask},
        {DIVISION, "32", "unusual: below 32, or 255 for not known, is"},
        {BOTTOM, "8", "unusual: a bit number from 0 to 7, or 255 for none, is"},
        {VOLTAGE, "3.3", "unusual: a number of volts and V, such as 3.3V, is"},
        {MFC, "0xFF", idle_maker},
        {MFC, "0", idle_maker},
        {MFC_INDEX, "255", no_wildcard},
        {ID_INDEX, "255", no_wildcard},
    };
    for (const auto& [member, cell, expected] : unusual) {
        const PGMDEV_FLASH_TABLE table = check({ref::row_with(member, cell)});
        ASSERT_EQ(found(table), PLACES{"9:" + ref::name_row()[member] + ":warning"}) << cell;
        EXPECT_EQ(table.faults()[0].row, "CHIP");
        EXPECT_EQ(table.faults()[0].cell, cell);
        EXPECT_EQ(table.faults()[0].expected, expected);
    }
    for (const auto& [member, cell] : {std::pair{BULK, "14400"},
                                       {SECTOR_TIME, "60"},
                                       {PROGRAM, "10"},
                                       {PROGRAM, "1000000"},
                                       {DIVISION, "31"},
                                       {BOTTOM, "7"},
                                       {BOTTOM, "255"},
                                       {SECTOR, "256"}}) {
        EXPECT_EQ(found(check({ref::row_with(member, cell)})), PLACES{}) << cell;
    }
    EXPECT_EQ(found(check({ref::row_with(DIVISION, "255")})), PLACES{});
    const PGMDEV_FLASH_TABLE beyond = check({ref::row_with(BITS, "268435456")});
    EXPECT_EQ(found(beyond), PLACES{"9:byte4_addressing:warning"});
    EXPECT_EQ(beyond.faults().at(0).expected, "3-byte addresses reach only 128 Mbit of this device");
    EXPECT_EQ(found(check({ref::row_with(BYTE4, "TRUE", ref::row_with(BITS, "268435456"))})), PLACES{});
    const PGMDEV_FLASH_TABLE idle = check({ref::row_with(SILICON, "TRUE", ref::row_with(ID, "0xFF"))});
    EXPECT_EQ(found(idle), PLACES{"9:memory_id:warning"});
    EXPECT_EQ(idle.faults().at(0).expected, "an idle bus answers this signature, too");
}

TEST_F(FlashTable, ANumberThatDoesNotFitIntoAByteIsAFault) {
    const PGMDEV_FLASH_TABLE wide = check({ref::row_with(TYPE, "256")});
    EXPECT_EQ(found(wide), PLACES{"9:memory_type:fault"});
    EXPECT_EQ(wide.faults().at(0).expected, "a number that fits into a byte, 0 to 255: of this one 0 would be stored");
    EXPECT_EQ(found(check({ref::row_with(TYPE, "255")})), PLACES{});
}

TEST_F(FlashTable, ATextThatNoReaderTakesIsAFault) {
    const PGMDEV_FLASH_TABLE longer = check({ref::row_with(0, std::string(256, 'M'))});
    EXPECT_EQ(found(longer), PLACES{"9:manufacturer_name:fault"});
    EXPECT_EQ(longer.faults().at(0).expected, "at most 255 characters: a longer text makes the database unreadable");
    EXPECT_EQ(found(check({ref::row_with(0, std::string(255, 'M'))})), PLACES{});
}

TEST_F(FlashTable, ReadsAPackedDatabaseWithItsDisabledRows) {
    PGMDEV_SFL_FLASH_INFO locked = ref::sample("B");
    locked.ini = "LOCKED";
    const std::vector<PGMDEV_SFL_FLASH_INFO> records{ref::sample("A"), locked};
    const PGMDEV_FLASH_TABLE table =
        PGMDEV_FLASH_TABLE::from_database(m_scratch.write("flash.pcf", ref::file(ref::payload(records))));
    EXPECT_EQ(table.records(), records);
    EXPECT_EQ(table.payload_size(), ref::payload(records).size());
    EXPECT_TRUE(table.faults().empty());
}

TEST_F(FlashTable, TellsWhyRecordsAreNoSourceTable) {
    for (const std::string name : {"", "A B", "A,B", "A\tB", "A\rB", "A\vB", "A\fB", "A\nB"}) {
        const std::string path =
            m_scratch.write("flash.pcf", ref::file(ref::payload({ref::sample(), ref::sample(name)})));
        std::string obstacle;
        EXPECT_EQ(PGMDEV_FLASH_TABLE::from_database(path).source_text(obstacle), "");
        EXPECT_EQ(obstacle, "record 1: device_name \"" + name + "\" cannot be a cell of a source table");
    }
}

TEST_F(FlashTable, APackedDatabaseOfAnotherKindIsReportedAndEmpty) {
    const std::string path =
        m_scratch.write("flash.pcf", "PGMIO_DM" + ref::file(ref::payload({ref::sample()})).substr(8));
    const REPORTS reports;
    EXPECT_TRUE(PGMDEV_FLASH_TABLE::from_database(path).records().empty());
    EXPECT_EQ(reports.all().size(), 1U);
}

}  // namespace

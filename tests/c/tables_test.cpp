#include <algorithm>

#include "c/owned.h"
#include "pgmdev_dev_info_table.h"
#include "pgmdev_flash_table.h"
#include "support/reports.h"
#include "support/scratch.h"

// Source tables and databases as a whole, through the C interface.

namespace {

struct SHIPPED {
    pgmdev_table_type type;
    std::string source;
    std::string database;
};

const std::vector<SHIPPED> ALL_SHIPPED{
    {PGMDEV_TABLE_FLASH, std::string(TEST_DATA_DIR) + "/flash/pgm_flash.csv",
     std::string(TEST_DEVICES_DIR) + "/programmer/pgm_flash.pcf"},
    {PGMDEV_TABLE_PROFILES, std::string(TEST_DATA_DIR) + "/dev_info/pgm_dev_info.csv",
     std::string(TEST_DEVICES_DIR) + "/programmer/pgm_dev_info.pcf"}};

template <class TABLE>
ROWS expected_faults(const std::string& file) {
    ROWS rows;
    const TABLE table = TABLE::from_source(FIO_PATH(file));
    for (const PGMDEV_TABLE_FAULT& fault : table.faults()) {
        rows.push_back({fault.severity == PGMDEV_TABLE_FAULT::SEVERITY::FAULT ? "FAULT" : "WARNING",
                        std::to_string(fault.line), std::to_string(fault.column), fault.row, fault.member, fault.cell,
                        fault.condition, fault.expected, TABLE::describe(fault, file)});
    }
    return rows;
}

ROWS expected_faults(pgmdev_table_type type, const std::string& file) {
    return type == PGMDEV_TABLE_FLASH ? expected_faults<PGMDEV_FLASH_TABLE>(file)
                                      : expected_faults<PGMDEV_DEV_INFO_TABLE>(file);
}

/// A flag of the first row, and what is none.
const std::string TRUE_CELL = "16,          TRUE,";
const std::string PERHAPS_CELL = "16,          perhaps,";

/// The source with the first text replaced.
std::string changed(const std::string& source, const std::string& from, const std::string& to) {
    std::string text = read_file(source);
    const std::size_t place = text.find(from);
    EXPECT_NE(place, std::string::npos) << from;
    return place == std::string::npos ? text : text.replace(place, from.size(), to);
}

}  // namespace

TEST(CTables, ADatabaseIsWhatItsSourceSays) {
    for (const SHIPPED& shipped : ALL_SHIPPED) {
        C_TABLE source;
        C_TABLE database;
        ASSERT_EQ(pgmdev_table_from_source(shipped.type, shipped.source.c_str(), source.place(), nullptr),
                  PGMDEV_STATUS_OK);
        ASSERT_EQ(pgmdev_table_from_database(shipped.type, shipped.database.c_str(), database.place(), nullptr),
                  PGMDEV_STATUS_OK);
        EXPECT_FALSE(pgmdev_table_has_faults(source));
        EXPECT_EQ(rows_of(pgmdev_table_faults(source)), expected_faults(shipped.type, shipped.source));
        EXPECT_GT(pgmdev_table_payload_size(database), 80000U);
        C_RECORDS differences;
        ASSERT_EQ(pgmdev_table_compare(source, database, differences.place(), nullptr), PGMDEV_STATUS_OK);
        EXPECT_EQ(rows_of(differences), ROWS());
        C_RECORDS members;
        ASSERT_EQ(pgmdev_table_members(shipped.type, members.place(), nullptr), PGMDEV_STATUS_OK);
        EXPECT_EQ(pgmdev_records_count(members), 0U);
        EXPECT_EQ(member_names(members), member_names(pgmdev_table_records(database)));
    }
}

TEST(CTables, CompilingGivesTheShippedDatabaseAndTheTextBack) {
    const SCRATCH scratch;
    for (const SHIPPED& shipped : ALL_SHIPPED) {
        const std::string output = scratch.path("é.pcf");
        ASSERT_EQ(pgmdev_table_compile(shipped.type, shipped.source.c_str(), output.c_str(), nullptr),
                  PGMDEV_STATUS_OK);
        EXPECT_TRUE(read_file(output) == read_file(shipped.database));
        C_TABLE database;
        C_STRING text;
        ASSERT_EQ(pgmdev_table_from_database(shipped.type, output.c_str(), database.place(), nullptr),
                  PGMDEV_STATUS_OK);
        ASSERT_EQ(pgmdev_table_source_text(database, text.place(), nullptr), PGMDEV_STATUS_OK);
        const std::string again = scratch.write("again.csv", bytes_of(text));
        ASSERT_EQ(pgmdev_table_compile(shipped.type, again.c_str(), output.c_str(), nullptr), PGMDEV_STATUS_OK);
        EXPECT_TRUE(read_file(output) == read_file(shipped.database));
    }
}

TEST(CTables, FaultsAreValues) {
    const SCRATCH scratch;
    const REPORTS quiet;
    const std::string& source = ALL_SHIPPED[0].source;
    const ROWS of_source = expected_faults(PGMDEV_TABLE_FLASH, source);
    for (const auto& [from, to] : std::vector<std::pair<std::string, std::string>>{
             {"W25Q64JV", "W25Q64JV_WITH_A_NAME_THAT_IS_LONG"}, {TRUE_CELL, PERHAPS_CELL}, {"device_name", "device"}}) {
        const std::string file = scratch.write("table.csv", changed(source, from, to));
        const ROWS expected = expected_faults(PGMDEV_TABLE_FLASH, file);
        C_TABLE table;
        ASSERT_EQ(pgmdev_table_from_source(PGMDEV_TABLE_FLASH, file.c_str(), table.place(), nullptr), PGMDEV_STATUS_OK);
        EXPECT_EQ(rows_of(pgmdev_table_faults(table)), expected);
        EXPECT_EQ(pgmdev_table_has_faults(table),
                  std::any_of(expected.begin(), expected.end(), [](const auto& row) { return row[0] == "FAULT"; }));
        EXPECT_NE(expected, of_source) << to;
    }
    const std::string broken = scratch.write("table.csv", changed(source, TRUE_CELL, PERHAPS_CELL));
    C_ERROR error;
    EXPECT_EQ(pgmdev_table_compile(PGMDEV_TABLE_FLASH, broken.c_str(), scratch.path("out.pcf").c_str(), error.place()),
              PGMDEV_STATUS_REPORTED);
    C_TABLE table;
    ASSERT_EQ(pgmdev_table_from_source(PGMDEV_TABLE_FLASH, broken.c_str(), table.place(), nullptr), PGMDEV_STATUS_OK);
    const char* condition = nullptr;
    ASSERT_EQ(pgmdev_records_text(pgmdev_table_faults(table), 0, "condition", &condition, nullptr), PGMDEV_STATUS_OK);
    EXPECT_STREQ(condition, pgmdev_error_condition(error));
}

TEST(CTables, DifferencesAreTold) {
    const SCRATCH scratch;
    const std::string& source = ALL_SHIPPED[0].source;
    std::string text = changed(source, "Winbond,           W25Q64JV", "Other,             W25Q64XX");
    text.erase(text.rfind('\n', text.size() - 2) + 1);  // the last row
    const std::string file = scratch.write("table.csv", text);
    C_TABLE left;
    C_TABLE right;
    ASSERT_EQ(pgmdev_table_from_source(PGMDEV_TABLE_FLASH, source.c_str(), left.place(), nullptr), PGMDEV_STATUS_OK);
    ASSERT_EQ(pgmdev_table_from_source(PGMDEV_TABLE_FLASH, file.c_str(), right.place(), nullptr), PGMDEV_STATUS_OK);
    C_RECORDS differences;
    ASSERT_EQ(pgmdev_table_compare(left, right, differences.place(), nullptr), PGMDEV_STATUS_OK);
    const ROWS rows = rows_of(differences);
    ASSERT_EQ(rows.size(), 3U);
    EXPECT_EQ((std::vector<std::string>(rows[0].begin() + 1, rows[0].end())),
              (std::vector<std::string>{"manufacturer_name", "Winbond", "Other"}));
    EXPECT_EQ((std::vector<std::string>(rows[1].begin() + 1, rows[1].end())),
              (std::vector<std::string>{"device_name", "W25Q64JV", "W25Q64XX"}));
    EXPECT_EQ(rows[2], (std::vector<std::string>{std::to_string(pgmdev_records_count(pgmdev_table_records(right))), "-",
                                                 "-", "-"}));
    C_TABLE profiles;
    ASSERT_EQ(pgmdev_table_from_source(PGMDEV_TABLE_PROFILES, ALL_SHIPPED[1].source.c_str(), profiles.place(), nullptr),
              PGMDEV_STATUS_OK);
    EXPECT_EQ(pgmdev_table_compare(left, profiles, differences.place(), nullptr), PGMDEV_STATUS_INVALID_ARGUMENT);
}

TEST(CTables, WhatIsNoDatabaseIsAnError) {
    const SCRATCH scratch;
    const REPORTS quiet;
    C_TABLE table;
    C_ERROR error;
    for (const SHIPPED& shipped : ALL_SHIPPED) {
        const std::string& other = ALL_SHIPPED[1 - shipped.type].database;
        EXPECT_EQ(pgmdev_table_from_database(shipped.type, other.c_str(), table.place(), error.place()),
                  PGMDEV_STATUS_REPORTED);
        EXPECT_STREQ(pgmdev_error_message(error), "the file is no database of that type");
        const std::string cut = scratch.write("cut.pcf", read_file(shipped.database).substr(0, 500));
        EXPECT_EQ(pgmdev_table_from_database(shipped.type, cut.c_str(), table.place(), error.place()),
                  PGMDEV_STATUS_REPORTED);
        EXPECT_STREQ(pgmdev_error_module(error), "PGMDEV");
        EXPECT_EQ(table, nullptr);
        EXPECT_EQ(pgmdev_table_from_source(shipped.type, "no/such.csv", table.place(), error.place()),
                  PGMDEV_STATUS_OK);
        EXPECT_TRUE(pgmdev_table_has_faults(table));
    }
}

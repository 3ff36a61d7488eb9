#include "command_fixture.h"
#include "flash_source.h"
#include "pgmdev/profiles/fixture.h"

// `flash diff` and `profile diff`.

namespace {

using RECORDS = std::vector<PGMDEV_SFL_FLASH_INFO>;

/// A record of that name and capacity ID.
PGMDEV_SFL_FLASH_INFO chip(const std::string& name, BYTE memory_id) {
    PGMDEV_SFL_FLASH_INFO r = flash_reference::sample(name);
    r.memory_id = memory_id;
    return r;
}

std::string database(const SCRATCH& scratch, const std::string& name, const RECORDS& records) {
    return scratch.write(name, flash_reference::file(flash_reference::payload(records)));
}

/// What differs between two databases of these records.
JSON diff(const RECORDS& before, const RECORDS& after) {
    const SCRATCH scratch;
    const std::string a = database(scratch, "a.pcf", before);
    const std::string b = database(scratch, "b.pcf", after);
    const PROCESS_RESULT result = run_command({"--json", "flash", "diff", a, b});
    JSON answer = json_of(result.output);
    EXPECT_EQ(answer.at("query"), (JSON{a, b}));
    EXPECT_EQ(answer.at("same"), result.exit_code == DONE);
    EXPECT_TRUE(result.exit_code == DONE || result.exit_code == NOT_FOUND);
    return answer;
}

/// An array of objects.
JSON rows(const std::vector<JSON>& objects) {
    return objects;
}

JSON change(const char* member, const JSON& unit, const JSON& before, const JSON& after) {
    return {{"member", member}, {"unit", unit}, {"before", before}, {"after", after}};
}

}  // namespace

TEST(table_diff, TheSame) {
    const RECORDS records{chip("A", 1), chip("B", 2)};
    const JSON answer = diff(records, records);
    EXPECT_EQ(keys_of(answer),
              (std::vector<std::string>{"query", "same", "added", "removed", "changed", "moved", "index_tables"}));
    for (const char* key : {"added", "removed", "changed", "moved"}) {
        EXPECT_EQ(answer.at(key), JSON::array());
    }
    EXPECT_EQ(answer.at("same"), true);
}

TEST(table_diff, AddedAndRemovedRows) {
    const JSON answer = diff({chip("A", 1), chip("B", 2), chip("C", 3)}, {chip("A", 1), chip("C", 3), chip("D", 4)});
    EXPECT_EQ(answer.at("removed"), rows({{{"key", "B 0:20 1:BA 2:02"}, {"index", 1}}}));
    EXPECT_EQ(answer.at("added"), rows({{{"key", "D 0:20 1:BA 2:04"}, {"index", 2}}}));
    EXPECT_EQ(answer.at("changed"), JSON::array());
    EXPECT_EQ(answer.at("moved"), JSON::array());
    EXPECT_EQ(answer.at("same"), false);
}

TEST(table_diff, ChangedMembersWithUnits) {
    PGMDEV_SFL_FLASH_INFO changed = chip("A", 1);
    changed.sec_erase_time = 7;
    changed.sdm_support = !changed.sdm_support;
    changed.protection_mask = 0x1C;
    const JSON answer = diff({chip("A", 1)}, {changed});
    ASSERT_EQ(answer.at("changed").size(), 1U);
    EXPECT_EQ(answer.at("changed")[0].at("key"), "A 0:20 1:BA 2:01");
    EXPECT_EQ(answer.at("changed")[0].at("members"),
              rows({change("sec_erase_time", "s", chip("A", 1).sec_erase_time, 7),
                    change("protection_mask", nullptr, chip("A", 1).protection_mask, 0x1C),
                    change("sdm_support", nullptr, chip("A", 1).sdm_support, changed.sdm_support)}));
    EXPECT_EQ(answer.at("moved"), JSON::array());
}

TEST(table_diff, MovedRowsAreTheFewest) {
    const JSON answer = diff({chip("A", 1), chip("B", 2), chip("C", 3), chip("D", 4)},
                             {chip("B", 2), chip("C", 3), chip("D", 4), chip("A", 1)});
    EXPECT_EQ(answer.at("moved"), rows({{{"key", "A 0:20 1:BA 2:01"}, {"before", 0}, {"after", 3}}}));
    EXPECT_EQ(answer.at("changed"), JSON::array());
    EXPECT_EQ(answer.at("same"), false);
}

TEST(table_diff, InsertedRowsMoveNothing) {
    const JSON answer = diff({chip("A", 1), chip("B", 2)}, {chip("X", 9), chip("A", 1), chip("Y", 8), chip("B", 2)});
    EXPECT_EQ(answer.at("moved"), JSON::array());
    EXPECT_EQ(answer.at("added").size(), 2U);
}

TEST(table_diff, ARowCanMoveAndChange) {
    PGMDEV_SFL_FLASH_INFO changed = chip("A", 1);
    changed.die_count = 4;
    const JSON answer = diff({chip("A", 1), chip("B", 2), chip("C", 3)}, {chip("B", 2), chip("C", 3), changed});
    EXPECT_EQ(answer.at("changed").size(), 1U);
    EXPECT_EQ(answer.at("moved").size(), 1U);
}

TEST(table_diff, EqualKeysArePairedWithWhatIsTheSame) {
    PGMDEV_SFL_FLASH_INFO locked = chip("A", 1);
    locked.ini = "LOCKED";
    const JSON answer = diff({chip("A", 1), locked}, {locked});
    EXPECT_EQ(answer.at("changed"), JSON::array());
    EXPECT_EQ(answer.at("removed"), rows({{{"key", "A 0:20 1:BA 2:01"}, {"index", 0}}}));
}

TEST(table_diff, NamesAreTheSameInAnyCase) {
    const JSON answer = diff({chip("Chip", 1)}, {chip("CHIP", 1)});
    ASSERT_EQ(answer.at("changed").size(), 1U);
    EXPECT_EQ(answer.at("changed")[0].at("members")[0].at("member"), "device_name");
}

TEST(table_diff, DatabasesAndSourceTablesInAnyMix) {
    const SCRATCH scratch;
    const std::string csv = scratch.write("t.csv", FLASH_SOURCE().row().text());
    const std::string other = scratch.write("u.csv", FLASH_SOURCE().row({{"bulk_erase_time", "251"}}).text());
    const std::string pcf = scratch.path("t.pcf");
    ASSERT_EQ(run_command({"flash", "compile", csv, pcf}).exit_code, DONE);
    EXPECT_EQ(run_command({"flash", "diff", csv, pcf}).exit_code, DONE);
    EXPECT_EQ(run_command({"flash", "diff", pcf, csv}).exit_code, DONE);
    EXPECT_EQ(run_command({"flash", "diff", csv, csv}).exit_code, DONE);
    const PROCESS_RESULT result = run_command({"flash", "diff", pcf, other});
    EXPECT_EQ(result.exit_code, NOT_FOUND);
    EXPECT_EQ(result.output,
              "changed  CHIP 0:20 1:BA 2:18\n"
              "           bulk_erase_time: 250 -> 251 s\n"
              "1 records, then 1: 0 added, 0 removed, 1 changed, 0 moved\n");
}

TEST(table_diff, WhatIsNoTableIsRefused) {
    const SCRATCH scratch;
    const std::string csv = scratch.write("t.csv", FLASH_SOURCE().row().text());
    expect_failure(run_command({"flash", "diff", csv, scratch.path("none")}), INTERNAL_ERROR, {"none"});
    expect_failure(run_command({"flash", "diff", scratch.write("x", "what?"), csv}), INTERNAL_ERROR, {});
    const std::string profiles = std::string(TEST_DEVICES_DIR) + "/programmer/pgm_dev_info.pcf";
    expect_failure(run_command({"flash", "diff", csv, profiles}), INTERNAL_ERROR, {});
    expect_failure(run_command({"flash", "diff", csv}), WRONG_USAGE, {});
}

TEST(table_diff, WhatIsMissingIsWhatItsNameSays) {
    const SCRATCH scratch;
    const std::string csv = scratch.write("t.csv", FLASH_SOURCE().row().text());
    for (const char* name : {"none.pcf", "none.PCF"}) {
        const std::string none = scratch.path(name);
        const PROCESS_RESULT result = run_command({"--json", "flash", "diff", csv, none});
        EXPECT_EQ(json_failure(result, INTERNAL_ERROR, "database_missing").at("path"), none);
    }
    json_failure(run_command({"--json", "profile", "diff", scratch.path("none.pcf"), csv}), INTERNAL_ERROR,
                 "database_missing");
    for (const char* name : {"none.csv", "none", "pcf"}) {
        json_failure(run_command({"--json", "flash", "diff", csv, scratch.path(name)}), INTERNAL_ERROR,
                     "source_table_unreadable");
    }
    const std::string table = scratch.write("table.pcf", read_file(csv));  // whatever it is called
    EXPECT_EQ(run_command({"flash", "diff", csv, table}).exit_code, DONE);
}

TEST(table_diff, LargeTables) {
    FLASH_SOURCE before;
    FLASH_SOURCE after;
    constexpr int ROWS = 50000;
    for (int i = 0; i < ROWS; ++i) {
        before.row({{"device_name", "C" + std::to_string(i)}});
        after.row({{"device_name", "C" + std::to_string((i + 1) % ROWS)}});
    }
    const SCRATCH scratch;
    const PROCESS_RESULT result = run_command(
        {"--json", "flash", "diff", scratch.write("a.csv", before.text()), scratch.write("b.csv", after.text())});
    EXPECT_EQ(result.exit_code, NOT_FOUND);
    EXPECT_EQ(json_of(result.output).at("moved"),
              rows({{{"key", "C0 0:20 1:BA 2:18"}, {"before", 0}, {"after", ROWS - 1}}}));
}

TEST(table_diff, Profiles) {
    const std::string csv = std::string(TEST_DATA_DIR) + "/dev_info/pgm_dev_info.csv";
    const std::string pcf = std::string(TEST_DEVICES_DIR) + "/programmer/pgm_dev_info.pcf";
    EXPECT_EQ(run_command({"profile", "diff", csv, pcf}).exit_code, DONE);
    const SCRATCH scratch;
    std::string text = read_file(csv);
    const std::size_t row = text.find("\nAVOCET,");
    text.replace(text.find(",1550,", row), 6, ",1551,");
    const PROCESS_RESULT result = run_command({"--json", "profile", "diff", pcf, scratch.write("t.csv", text)});
    EXPECT_EQ(result.exit_code, NOT_FOUND);
    const JSON answer = json_of(result.output);
    ASSERT_EQ(answer.at("changed").size(), 1U);
    EXPECT_EQ(answer.at("changed")[0].at("key"), "family AVOCET");
    EXPECT_EQ(answer.at("changed")[0].at("members"),
              rows({change("jtag_program_initialize_microsec", "us", 1550, 1551)}));
}

TEST(table_diff, IndexTablesOfProfiles) {
    namespace ref = dev_info_reference;
    const SCRATCH scratch;
    const auto file = [&](const std::string& name, std::size_t record) {
        ref::TABLES index_tables;
        index_tables.family[6] = static_cast<unsigned long>(record);
        return scratch.write(name, ref::file(ref::records(ref::rows()) + ref::tables(index_tables)));
    };
    const PROCESS_RESULT result = run_command({"--json", "profile", "diff", file("a", 2), file("b", 3)});
    EXPECT_EQ(result.exit_code, NOT_FOUND);
    EXPECT_EQ(json_of(result.output).at("index_tables"), rows({{{"table", "family"}, {"entries", 1}}}));
}

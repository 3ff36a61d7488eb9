#include <filesystem>
#include <fstream>

#include "c/owned.h"
#include "pgmdev_flash_manager.h"
#include "support/reports.h"
#include "support/scratch.h"
#include "support/settings.h"

// The flash database through the C interface, value by value against the record of the class.

namespace {

const std::string DATABASE = std::string(TEST_DEVICES_DIR) + "/programmer/pgm_flash.pcf";

std::vector<std::string> expected_row(const PGMDEV_SFL_FLASH_INFO& record) {
    std::vector<std::string> row;
    row.reserve(PGMDEV_SFL_FLASH_MEMBERS.size());
    for (const PGMDEV_SFL_FLASH_MEMBER& member : PGMDEV_SFL_FLASH_MEMBERS) {
        row.push_back(std::visit(
            [&](auto field) -> std::string {
                if constexpr (std::is_same_v<decltype(field), std::string PGMDEV_SFL_FLASH_INFO::*>) {
                    return record.*field;
                } else {
                    return std::to_string(record.*field);
                }
            },
            member.field));
    }
    return row;
}

void expect_records(const pgmdev_records* records, PGMDEV_FLASH_MANAGER& manager) {
    ASSERT_EQ(pgmdev_records_count(records), manager.get_flash_count());
    for (DWORD i = 0; i < manager.get_flash_count(); ++i) {
        ASSERT_EQ(row_of(records, i), expected_row(manager.get_flash_database()[i])) << i;
    }
}

/// Expects that the file cannot be opened, and that the error is what the library reports of it.
void expect_report_of_opening(const std::string& path) {
    const REPORTS reports;
    C_FLASH flash;
    C_ERROR error;
    ASSERT_EQ(pgmdev_flash_open(path.c_str(), flash.place(), error.place()), PGMDEV_STATUS_REPORTED)
        << pgmdev_error_message(error);
    EXPECT_EQ(flash, nullptr);
    ASSERT_FALSE(reports.all().empty());
    const MSG_INTERNAL_ERROR_REPORT& report = reports.all().back();
    EXPECT_EQ(pgmdev_error_condition(error), report.condition);
    EXPECT_EQ(pgmdev_error_module(error), report.module);
    EXPECT_EQ(pgmdev_error_file(error), report.file);
    EXPECT_EQ(pgmdev_error_line(error), report.line);
    EXPECT_EQ(pgmdev_error_message(error), report.condition);
}

}  // namespace

TEST(CFlash, RecordsAreThoseOfTheManager) {
    PGMDEV_FLASH_MANAGER manager(false, 1, false, false);
    C_FLASH flash;
    ASSERT_EQ(pgmdev_flash_open(nullptr, flash.place(), nullptr), PGMDEV_STATUS_OK);
    expect_records(pgmdev_flash_records(flash), manager);
    EXPECT_GT(manager.get_flash_count(), 700U);
}

TEST(CFlash, MembersAreThoseOfTheMemberTable) {
    C_FLASH flash;
    ASSERT_EQ(pgmdev_flash_open(DATABASE.c_str(), flash.place(), nullptr), PGMDEV_STATUS_OK);
    const pgmdev_records* records = pgmdev_flash_records(flash);
    ASSERT_EQ(pgmdev_records_member_count(records), PGMDEV_SFL_FLASH_MEMBERS.size());
    constexpr std::array KINDS{PGMDEV_KIND_TEXT, PGMDEV_KIND_BOOL, PGMDEV_KIND_NUMBER, PGMDEV_KIND_NUMBER};
    constexpr std::array BITS{0U, 1U, 8U, 32U};
    for (std::size_t i = 0; i < PGMDEV_SFL_FLASH_MEMBERS.size(); ++i) {
        const PGMDEV_SFL_FLASH_MEMBER& expected = PGMDEV_SFL_FLASH_MEMBERS[i];
        pgmdev_member member{};
        member.struct_size = sizeof member;
        ASSERT_EQ(pgmdev_records_member(records, i, &member, nullptr), PGMDEV_STATUS_OK);
        std::size_t found = 0;
        EXPECT_EQ(pgmdev_records_find_member(records, member.name, &found, nullptr), PGMDEV_STATUS_OK);
        const bool same = member.name == expected.name && member.unit == expected.unit && found == i &&
                          member.kind == KINDS[expected.field.index()] && member.bits == BITS[expected.field.index()] &&
                          (member.base == 16) == (expected.base == PGMDEV_NUMBER_BASE::BASE_16);
        EXPECT_TRUE(same) << expected.name;
    }
}

TEST(CFlash, EveryDefaultRecordIsFoundByItsName) {
    PGMDEV_FLASH_MANAGER manager(false, 1, false, false);
    C_FLASH flash;
    ASSERT_EQ(pgmdev_flash_open(nullptr, flash.place(), nullptr), PGMDEV_STATUS_OK);
    for (DWORD i = 0; i < manager.get_flash_count(); ++i) {
        const std::string name = manager.get_flash_database()[i].device_name;
        std::size_t record = 0;
        ASSERT_EQ(pgmdev_flash_find(flash, name.c_str(), &record, nullptr), PGMDEV_STATUS_OK);
        ASSERT_EQ(record, static_cast<std::size_t>(manager.get_default_flash(name) - manager.get_flash_database()))
            << name;
    }
    std::size_t record = 0;
    EXPECT_EQ(pgmdev_flash_find(flash, "W25Q65", &record, nullptr), PGMDEV_STATUS_NOT_FOUND);
    EXPECT_EQ(record, PGMDEV_NO_RECORD);
}

TEST(CFlash, SwitchesAndTheUsersOwnFlashCountAsForTheManager) {
    const SETTING allowed("PGM_ALLOW_M45PE", "on");
    PGMDEV_FLASH_MANAGER manager(false, 1, false, false);
    C_FLASH flash;
    ASSERT_EQ(pgmdev_flash_open(nullptr, flash.place(), nullptr), PGMDEV_STATUS_OK);
    expect_records(pgmdev_flash_records(flash), manager);
    C_STRING value;
    EXPECT_EQ(said(pgmdev_configuration("PGM_ALLOW_M45PE", value.place(), nullptr), value), "OK on");
}

TEST(CFlash, PathsAreUtf8) {
    const SCRATCH scratch;
    const std::string path = scratch.write("Gerät 漢字/flash é.pcf", read_file(DATABASE));
    C_FLASH flash;
    ASSERT_EQ(pgmdev_flash_open(path.c_str(), flash.place(), nullptr), PGMDEV_STATUS_OK);
    EXPECT_GT(pgmdev_records_count(pgmdev_flash_records(flash)), 700U);
}

TEST(CFlash, DamagedFilesAreErrorsWithTheReport) {
    const SCRATCH scratch;
    const std::string whole = read_file(DATABASE);
    for (const std::size_t size : {std::size_t{0}, std::size_t{8}, std::size_t{41}, whole.size() / 2}) {
        SCOPED_TRACE(size);
        expect_report_of_opening(scratch.write("cut.pcf", whole.substr(0, size)));
    }
}

TEST(CFlash, FilesThatAreNotThereAreErrorsWithTheReport) {
    const SCRATCH scratch;
    for (const std::string& path : {std::string(), std::string("no/such.pcf"), scratch.path("")}) {
        SCOPED_TRACE(path);
        expect_report_of_opening(path);
    }
}

#if !defined(_WIN32)

TEST(CFlash, WithoutACurrentDirectoryPathsBelowItAreErrorsWithTheReport) {
    const SCRATCH scratch;
    const std::filesystem::path before = std::filesystem::current_path();
    std::filesystem::create_directory(scratch.path("gone"));
    std::filesystem::current_path(scratch.path("gone"));
    std::filesystem::remove(scratch.path("gone"));
    expect_report_of_opening("flash.pcf");
    std::filesystem::current_path(before);
}

#endif

TEST(CFlash, ADatabaseOfAnotherKindIsAnError) {
    const REPORTS reports;
    const std::string profiles = std::string(TEST_DEVICES_DIR) + "/programmer/pgm_dev_info.pcf";
    C_FLASH flash;
    C_ERROR error;
    EXPECT_EQ(pgmdev_flash_open(profiles.c_str(), flash.place(), error.place()), PGMDEV_STATUS_REPORTED);
    EXPECT_EQ(flash, nullptr);
    EXPECT_STREQ(pgmdev_error_message(error), "the file is no flash database");
    EXPECT_EQ(reports.all().size(), 1U);
}

TEST(CFlash, WhatIsWrongWithTheNotesIsTold) {
    C_FLASH shipped;
    ASSERT_EQ(pgmdev_flash_open(nullptr, shipped.place(), nullptr), PGMDEV_STATUS_OK);
    EXPECT_EQ(pgmdev_records_count(pgmdev_flash_notes_faults(shipped)), 0U);

    const SCRATCH scratch;
    const std::string path = scratch.write("flash.pcf", read_file(DATABASE));
    scratch.write("flash.pcf.identifications.csv", "device_name, identification\nW25Q64JV, EF401G\n");
    C_FLASH flash;
    ASSERT_EQ(pgmdev_flash_open(path.c_str(), flash.place(), nullptr), PGMDEV_STATUS_OK);
    const pgmdev_records* faults = pgmdev_flash_notes_faults(flash);
    ASSERT_EQ(pgmdev_records_count(faults), 1U);
    const char* severity = nullptr;
    const char* text = nullptr;
    uint64_t line = 0;
    EXPECT_EQ(pgmdev_records_text(faults, 0, "severity", &severity, nullptr), PGMDEV_STATUS_OK);
    EXPECT_EQ(pgmdev_records_text(faults, 0, "text", &text, nullptr), PGMDEV_STATUS_OK);
    EXPECT_EQ(pgmdev_records_number(faults, 0, "line", &line, nullptr), PGMDEV_STATUS_OK);
    EXPECT_STREQ(severity, "FAULT");
    EXPECT_EQ(line, 2U);
    EXPECT_EQ(std::string(text).find(path + ".identifications.csv:2:"), 0U) << text;
}

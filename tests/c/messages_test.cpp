#include "c/owned.h"
#include "gen.h"
#include "msg.h"
#include "pgmdev_version.h"
#include "support/reports.h"
#include "support/scratch.h"
#include "ver.h"

// Who hears of reports and debug messages; and where files are looked for.

namespace {

struct HEARD {
    std::vector<std::string> texts;
};

void hear_report(const pgmdev_report* report, void* user) {
    EXPECT_EQ(report->struct_size, sizeof *report);
    EXPECT_GT(report->line, 0);
    static_cast<HEARD*>(user)->texts.push_back(std::string(report->module) + ": " + report->condition);
}

void hear_message(const char* logger, int32_t level, const char* text, void* user) {
    static_cast<HEARD*>(user)->texts.push_back(std::string(logger) + ' ' + std::to_string(level) + ": " + text);
}

}  // namespace

TEST(CMessages, ReportsReachTheHandler) {
    HEARD heard;
    ASSERT_EQ(pgmdev_set_report_handler(hear_report, &heard, nullptr), PGMDEV_STATUS_OK);
    C_FLASH flash;
    C_ERROR error;
    EXPECT_EQ(pgmdev_flash_open("no/such.pcf", flash.place(), error.place()), PGMDEV_STATUS_REPORTED);
    ASSERT_EQ(heard.texts.size(), 1U);
    EXPECT_EQ(heard.texts[0], std::string("PGMDEV: ") + pgmdev_error_condition(error));
    C_STRING part;
    EXPECT_EQ(pgmdev_part_from_device("no such device", part.place(), error.place()), PGMDEV_STATUS_NOT_FOUND);
    EXPECT_EQ(heard.texts.back(), "PGMDEV: Device is not valid in DEV database");
    EXPECT_EQ(error, nullptr);
    ASSERT_EQ(pgmdev_set_report_handler(nullptr, nullptr, nullptr), PGMDEV_STATUS_OK);
    EXPECT_FALSE(MSG_INTERNAL_ERROR::set_handler({}));
}

TEST(CMessages, DebugMessagesReachTheHandler) {
    HEARD heard;
    ASSERT_EQ(pgmdev_set_debug_handler(hear_message, &heard, nullptr), PGMDEV_STATUS_OK);
    msg_local_vdebug("TEST", 3, "number %d", 7);
    ASSERT_EQ(pgmdev_set_debug_handler(nullptr, nullptr, nullptr), PGMDEV_STATUS_OK);
    EXPECT_EQ(heard.texts, std::vector<std::string>{"TEST 3: number 7"});
    EXPECT_FALSE(msg_set_debug_sink({}));
}

TEST(CMessages, AReporterOfTheProgramThatReturnsMakesNoDifference) {
    const RETURNING_REPORTER reporter;
    C_FLASH flash;
    C_ERROR error;
    EXPECT_EQ(pgmdev_flash_open("no/such.pcf", flash.place(), error.place()), PGMDEV_STATUS_REPORTED);
    EXPECT_STREQ(pgmdev_error_module(error), "PGMDEV");
}

TEST(CMessages, WhatAHostThrowsIsAStatus) {
    C_FLASH flash;
    C_ERROR error;
    auto previous = MSG_INTERNAL_ERROR::set_handler(
        [](const MSG_INTERNAL_ERROR_REPORT& /*report*/) { throw std::runtime_error("the host has ended it"); });
    EXPECT_EQ(pgmdev_flash_open("no/such.pcf", flash.place(), error.place()), PGMDEV_STATUS_FAILED);
    EXPECT_STREQ(pgmdev_error_message(error), "the host has ended it");
    MSG_INTERNAL_ERROR::set_handler([](const MSG_INTERNAL_ERROR_REPORT& /*report*/) { throw 5; });
    EXPECT_EQ(pgmdev_flash_open("no/such.pcf", flash.place(), error.place()), PGMDEV_STATUS_FAILED);
    EXPECT_STREQ(pgmdev_error_message(error), "something that is no error was thrown");
    MSG_INTERNAL_ERROR::set_handler(previous);
}

TEST(CMessages, ConfigurationIsThatOfTheHost) {
    C_STRING value;
    EXPECT_EQ(pgmdev_configuration("PGM_C_TEST", value.place(), nullptr), PGMDEV_STATUS_NOT_FOUND);
    ASSERT_EQ(pgmdev_set_configuration("PGM_C_TEST", "a value", nullptr), PGMDEV_STATUS_OK);
    EXPECT_EQ(said(pgmdev_configuration("PGM_C_TEST", value.place(), nullptr), value), "OK a value");
    ASSERT_EQ(pgmdev_set_configuration("PGM_C_TEST", nullptr, nullptr), PGMDEV_STATUS_OK);
    EXPECT_EQ(pgmdev_configuration("PGM_C_TEST", value.place(), nullptr), PGMDEV_STATUS_NOT_FOUND);
}

TEST(CMessages, DirectoriesAreThoseOfTheHost) {
    struct PLACE {
        pgmdev_directory directory;
        std::string (*path)();
    };
    const SCRATCH scratch;
    for (const PLACE& place : {PLACE{PGMDEV_DIRECTORY_INSTALLATION, gen_get_tessary_path},
                               PLACE{PGMDEV_DIRECTORY_DATABASES, gen_get_device_db_fullpath},
                               PLACE{PGMDEV_DIRECTORY_MODULE, gen_get_module_path}}) {
        const std::string before = place.path();
        C_STRING path;
        EXPECT_EQ(said(pgmdev_directory_path(place.directory, path.place(), nullptr), path), said(before));
        ASSERT_EQ(pgmdev_set_directory(place.directory, scratch.path("é").c_str(), nullptr), PGMDEV_STATUS_OK);
        EXPECT_EQ(said(pgmdev_directory_path(place.directory, path.place(), nullptr), path), said(scratch.path("é")));
        EXPECT_EQ(place.path(), scratch.path("é"));
        ASSERT_EQ(pgmdev_set_directory(place.directory, nullptr, nullptr), PGMDEV_STATUS_OK);
        EXPECT_EQ(place.path(), before);
    }
}

TEST(CMessages, VersionsAreThoseOfTheClasses) {
    C_RECORDS versions;
    ASSERT_EQ(pgmdev_versions(versions.place(), nullptr), PGMDEV_STATUS_OK);
    EXPECT_EQ(rows_of(versions), (ROWS{{PGMDEV_VERSION::library(), ver_get_version(), PGMDEV_VERSION::catalog(),
                                        PGMDEV_VERSION::flash_stamp(), PGMDEV_VERSION::dev_info_stamp(),
                                        std::to_string(PGMDEV_VERSION::body_version())}}));
}

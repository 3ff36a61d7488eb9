#include <gtest/gtest.h>

#include <array>

#include "c/owned.h"
#include "threads/first_call.h"

// Eight threads whose first calls of all go through the C interface: each opens, asks and closes by itself, and gets what
// a single one would. With the first calls of the classes, in a program of their own.

namespace {

std::string database(const char* name) {
    return std::string(TEST_DEVICES_DIR) + "/programmer/" + name;
}

std::string name_of(const C_FLASH& flash, std::size_t record) {
    const char* name = nullptr;
    const pgmdev_status status =
        pgmdev_records_text(pgmdev_flash_records(flash), record, "device_name", &name, nullptr);
    return status == PGMDEV_STATUS_OK ? name : pgmdev_status_name(status);
}

std::string converted(pgmdev_name_conversion conversion, const char* name) {
    C_STRING found;
    return said(pgmdev_name_convert(conversion, name, 0, found.place(), nullptr), found);
}

std::string identified() {
    C_FLASH flash;
    if (pgmdev_flash_open(nullptr, flash.place(), nullptr) != PGMDEV_STATUS_OK) {
        return "not opened";
    }
    constexpr std::array<uint8_t, 4> BYTES{0xEF, 0x40, 0x17, 0x00};
    pgmdev_flash_response response{};
    response.struct_size = sizeof response;
    response.bytes = BYTES.data();
    response.size = BYTES.size();
    pgmdev_flash_verdict verdict{};
    verdict.struct_size = sizeof verdict;
    C_ANSWER details;
    const pgmdev_status status = pgmdev_flash_identify(flash, &response, &verdict, details.place(), nullptr);
    return status == PGMDEV_STATUS_OK ? name_of(flash, verdict.record) : pgmdev_status_name(status);
}

/// How many records there are, behind the status.
std::string counted(pgmdev_status status, const pgmdev_records* records) {
    return std::string(pgmdev_status_name(status)) + " " + std::to_string(pgmdev_records_count(records));
}

constexpr std::array C_CALLS{
    FIRST_CALL{"Identification", identified, "W25Q64JV"},
    FIRST_CALL{"Conversion", [] { return converted(PGMDEV_NAME_PROGRAMMING, "kes50c6"); }, "OK KES50"},
    FIRST_CALL{"Family", [] { return converted(PGMDEV_NAME_FAMILY, "KES_50"); }, "OK KESTREL"},
    FIRST_CALL{"FullName",
               [] {
                   C_STRING part;
                   return said(pgmdev_part_complete("kes50", part.place(), nullptr), part);
               },
               "OK KES50C6"},
    FIRST_CALL{"PartIndex",
               [] {
                   C_PART_INDEX index;
                   C_STRING part;
                   return pgmdev_part_index_open(index.place(), nullptr) != PGMDEV_STATUS_OK
                              ? "not opened"
                              : said(pgmdev_part_index_complete(index, "kes50", part.place(), nullptr), part);
               },
               "OK KES50C6"},
    FIRST_CALL{"OrderingCode",
               [] {
                   uint32_t index = 0;
                   C_STRING name;
                   return pgmdev_opn_index("KES50C6", &index, nullptr) != PGMDEV_STATUS_OK
                              ? "not found"
                              : said(pgmdev_opn_name(index, name.place(), nullptr), name);
               },
               "OK KES50C6"},
    FIRST_CALL{"Profiles",
               [] {
                   C_PROFILES profiles;
                   const pgmdev_status status = pgmdev_profile_open(nullptr, profiles.place(), nullptr);
                   return counted(status, pgmdev_profile_records(profiles));
               },
               "OK 78"},
    FIRST_CALL{"Table",
               [] {
                   C_TABLE table;
                   const pgmdev_status status = pgmdev_table_from_database(
                       PGMDEV_TABLE_PROFILES, database("pgm_dev_info.pcf").c_str(), table.place(), nullptr);
                   return counted(status, pgmdev_table_records(table));
               },
               "OK 78"},
    FIRST_CALL{"Kinds",
               [] {
                   C_RECORDS kinds;
                   const pgmdev_status status = pgmdev_hps_kinds(kinds.place(), nullptr);
                   return counted(status, kinds);
               },
               "OK 2"},
    FIRST_CALL{"Enumerator",
               [] {
                   C_STRING name;
                   return said(pgmdev_enum_name(PGMDEV_ENUMERATION_SECTOR, 8, name.place(), nullptr), name);
               },
               "OK DONE_BITS"},
    FIRST_CALL{"Error",
               [] {
                   C_STRING name;
                   C_ERROR error;
                   pgmdev_name_convert(PGMDEV_NAME_CONVERSIONS, "KES50C6", 0, name.place(), error.place());
                   return std::string(pgmdev_error_message(error));
               },
               "there is no conversion of that number"},
};

class CFirstCalls : public testing::TestWithParam<FIRST_CALL> {};

TEST_P(CFirstCalls, OfEightThreads) {
    const FIRST_CALL& call = GetParam();
    EXPECT_EQ(answers_to_all(call.ask), std::vector<std::string>(THREADS, call.answer));
    EXPECT_EQ(call.ask(), call.answer);
}

INSTANTIATE_TEST_SUITE_P(Each, CFirstCalls, testing::ValuesIn(C_CALLS),
                         [](const testing::TestParamInfo<FIRST_CALL>& instance) { return instance.param.name; });

class CFirstCallsAtOnce : public testing::TestWithParam<std::size_t> {};

TEST_P(CFirstCallsAtOnce, OfEightThreads) {
    EXPECT_EQ(wrong_of_all_at_once(C_CALLS, GetParam()), std::vector<std::string>(THREADS, ""));
}

INSTANTIATE_TEST_SUITE_P(FurtherOn, CFirstCallsAtOnce, testing::Values(0, 1, 3));

}  // namespace

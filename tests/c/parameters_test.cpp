#include "c/owned.h"
#include "pgmdev/parameters/fixture.h"
#include "support/reports.h"
#include "support/scratch.h"
#include "support/settings.h"

// The parameter container through the C interface.

namespace {

pgmdev_value number(uint64_t value) {
    return {PGMDEV_KIND_NUMBER, 0, value, nullptr, 0};
}
pgmdev_value text(const char* value) {
    return {PGMDEV_KIND_TEXT, 0, 0, value, 0};
}
pgmdev_value flag(bool value) {
    return {PGMDEV_KIND_BOOL, 0, value ? 1U : 0U, nullptr, 0};
}

constexpr std::array<pgmdev_parameter_type, 6> ALL_TYPES{PGMDEV_PARAMETER_STRING, PGMDEV_PARAMETER_BOOL,
                                                         PGMDEV_PARAMETER_BYTE,   PGMDEV_PARAMETER_WORD,
                                                         PGMDEV_PARAMETER_DWORD,  PGMDEV_PARAMETER_QWORD};
const std::array ALL_VALUES{text("é"),      flag(true),         number(0xFE),
                            number(0xFEDC), number(0xFEDCBA98), number(0xFEDCBA9876543210)};
const std::string ALL_BYTES("\xC3\xA9\0\x01\xFE\xDC\xFE\x98\xBA\xDC\xFE\x10\x32\x54\x76\x98\xBA\xDC\xFE", 19);

const std::string WITH_ZERO("a\0b", 3);
const std::string XY = "xy";

const uint8_t* bytes(const std::string& data) {
    return reinterpret_cast<const uint8_t*>(data.data());
}

class CParameters : public testing::Test {
protected:
    std::string read(pgmdev_parameter_block block) {
        C_STRING found;
        return said(pgmdev_parameters_read(block, found.place(), nullptr), found);
    }

    SCRATCH m_scratch;
    MODULE_DIRECTORY m_module{m_scratch.path("")};
};

}  // namespace

TEST_F(CParameters, BlocksAreThoseOfTheFile) {
    EXPECT_EQ(read(PGMDEV_PARAMETER_BLOCK_HPS_SPI), "NOT_FOUND");
    ASSERT_EQ(pgmdev_parameters_write(PGMDEV_PARAMETER_BLOCK_HPS_SPI, bytes(WITH_ZERO), 3, nullptr), PGMDEV_STATUS_OK);
    ASSERT_EQ(pgmdev_parameters_write(PGMDEV_PARAMETER_BLOCK_HPS_NAND, bytes(XY), 2, nullptr), PGMDEV_STATUS_OK);
    EXPECT_EQ(read_file(m_scratch.path("pgm_flash.ini")), ini_reference::file({std::nullopt, WITH_ZERO, XY}));
    EXPECT_EQ(read(PGMDEV_PARAMETER_BLOCK_HPS_SPI), "OK " + WITH_ZERO);
    C_RECORDS blocks;
    ASSERT_EQ(pgmdev_parameter_blocks(blocks.place(), nullptr), PGMDEV_STATUS_OK);
    EXPECT_EQ(rows_of(blocks),
              (ROWS{{"0", "SFL FLASH", "0", "-"}, {"1", "HPS SPI", "1", "3"}, {"2", "HPS NAND", "1", "2"}}));
    ASSERT_EQ(pgmdev_parameters_remove(PGMDEV_PARAMETER_BLOCK_HPS_SPI, nullptr), PGMDEV_STATUS_OK);
    EXPECT_EQ(read_file(m_scratch.path("pgm_flash.ini")), ini_reference::file({std::nullopt, std::nullopt, XY}));
    EXPECT_EQ(pgmdev_parameters_write(PGMDEV_PARAMETER_BLOCK_HPS_SPI, bytes(XY), 0, nullptr),
              PGMDEV_STATUS_INVALID_ARGUMENT);
}

TEST_F(CParameters, WhatCannotBeWrittenIsAnError) {
    const MODULE_DIRECTORY nowhere(m_scratch.path("no/such/directory"));
    m_scratch.write("no", "a file where a directory would have to be");
    C_ERROR error;
    EXPECT_EQ(pgmdev_parameters_write(PGMDEV_PARAMETER_BLOCK_HPS_SPI, bytes(XY), 1, error.place()),
              PGMDEV_STATUS_NOT_WRITTEN);
    EXPECT_STREQ(pgmdev_error_message(error), "the parameter container could not be written");
}

TEST_F(CParameters, ValuesGoIntoBytesAndBack) {
    C_STRING block;
    ASSERT_EQ(pgmdev_parameters_encode(ALL_TYPES.data(), ALL_VALUES.data(), ALL_TYPES.size(), block.place(), nullptr),
              PGMDEV_STATUS_OK);
    EXPECT_EQ(bytes_of(block), ALL_BYTES);
    C_RECORDS values;
    std::size_t position = 0;
    ASSERT_EQ(pgmdev_parameters_decode(bytes(ALL_BYTES), ALL_BYTES.size(), &position, ALL_TYPES.data(),
                                       ALL_TYPES.size(), values.place(), nullptr),
              PGMDEV_STATUS_OK);
    EXPECT_EQ(position, ALL_BYTES.size());
    EXPECT_EQ(rows_of(values), (ROWS{{"é"}, {"1"}, {"254"}, {"65244"}, {"4275878552"}, {"18364758544493064720"}}));
}

TEST_F(CParameters, OfABlockThatEndsTooSoonTheFirstValuesAreGiven) {
    C_RECORDS values;
    std::size_t position = 3;
    EXPECT_EQ(pgmdev_parameters_decode(bytes(ALL_BYTES), 6, &position, &ALL_TYPES[1], 5, values.place(), nullptr),
              PGMDEV_STATUS_NOT_FOUND);
    EXPECT_EQ(rows_of(values), (ROWS{{"1"}, {"254"}}));
    EXPECT_EQ(position, 5U);
    position = 7;
    EXPECT_EQ(pgmdev_parameters_decode(bytes(ALL_BYTES), 6, &position, ALL_TYPES.data(), 1, values.place(), nullptr),
              PGMDEV_STATUS_INVALID_ARGUMENT);
}

TEST_F(CParameters, ValuesMustFitTheirTypes) {
    C_STRING block;
    const std::array<std::pair<pgmdev_parameter_type, pgmdev_value>, 6> unfit{
        {{PGMDEV_PARAMETER_BYTE, number(0x100)},
         {PGMDEV_PARAMETER_WORD, number(0x10000)},
         {PGMDEV_PARAMETER_DWORD, number(0x100000000)},
         {PGMDEV_PARAMETER_BOOL, number(1)},
         {PGMDEV_PARAMETER_STRING, flag(true)},
         {7, number(1)}}};
    for (const auto& [type, value] : unfit) {
        EXPECT_EQ(pgmdev_parameters_encode(&type, &value, 1, block.place(), nullptr), PGMDEV_STATUS_INVALID_ARGUMENT)
            << type;
    }
    pgmdev_value of_a_later_version = number(1);
    of_a_later_version.reserved = 1;
    const pgmdev_parameter_type type = PGMDEV_PARAMETER_BYTE;
    EXPECT_EQ(pgmdev_parameters_encode(&type, &of_a_later_version, 1, block.place(), nullptr),
              PGMDEV_STATUS_INVALID_ARGUMENT);
}

TEST_F(CParameters, ValuesAsText) {
    const std::array<const char*, 6> plain{"é", "True", "254", "65244", "4275878552", "18364758544493064720"};
    const std::array<const char*, 6> hexadecimal{"é", "True", "0xFE", "0xFEDC", "0xFEDCBA98", "0xFEDCBA9876543210"};
    C_STRING shown_text;
    for (std::size_t i = 0; i < ALL_TYPES.size(); ++i) {
        for (const bool hex : {false, true}) {
            const pgmdev_status status =
                pgmdev_parameter_text(ALL_TYPES[i], &ALL_VALUES[i], hex, shown_text.place(), nullptr);
            EXPECT_EQ(said(status, shown_text), said(hex ? hexadecimal[i] : plain[i]));
        }
    }
    EXPECT_EQ(said(pgmdev_number_hexadecimal(0xABC, 2, true, shown_text.place(), nullptr), shown_text), "OK 0xBC");
    EXPECT_EQ(said(pgmdev_number_hexadecimal(0xABC, 16, false, shown_text.place(), nullptr), shown_text),
              "OK 0000000000000ABC");
}

TEST_F(CParameters, NumbersThatPeopleWrite) {
    struct CASE {
        const char* text;
        pgmdev_number_rules rules;
        const char* expected;
    };
    const std::array<uint32_t, 4> ranges{1, 4, 16, 32};
    const std::array<uint32_t, 2> odd{1, 1};
    pgmdev_number_rules none{};
    none.struct_size = sizeof none;
    pgmdev_number_rules hex = none;
    hex.hexadecimal = true;
    pgmdev_number_rules times_4 = none;
    times_4.multiple = 4;
    pgmdev_number_rules strict = none;
    strict.power_of_two = true;
    strict.ranges = ranges.data();
    strict.range_count = 2;
    pgmdev_number_rules even = none;
    even.invalid_hits = odd.data();
    even.invalid_hit_count = 1;
    pgmdev_number_rules exponent = none;
    exponent.exponent = true;
    const std::vector<CASE> cases{{"12", none, "12"},
                                  {"0x1F", none, "31"},
                                  {"-1", none, "255"},
                                  {"1F", hex, "31"},
                                  {"5", times_4, "20"},
                                  {"16", strict, "16"},
                                  {"8", strict, "Input is out of range"},
                                  {"3", strict, "Input must be power of 2"},
                                  {"4", even, "4"},
                                  {"5", even, "Input is invalid (hit)"},
                                  {"5", exponent, "32"},
                                  {"256", none, "Conversion overflow compare to type"},
                                  {"x", none, "Invalid QWORD conversion"}};
    for (const CASE& each : cases) {
        uint64_t value = 0;
        C_ERROR error;
        const pgmdev_status status =
            pgmdev_parameter_number(PGMDEV_PARAMETER_BYTE, each.text, &each.rules, &value, error.place());
        EXPECT_EQ(status == PGMDEV_STATUS_OK ? std::to_string(value) : pgmdev_error_message(error), each.expected)
            << each.text;
        EXPECT_TRUE(status == PGMDEV_STATUS_OK || status == PGMDEV_STATUS_REFUSED);
    }
    uint64_t value = 0;
    EXPECT_EQ(pgmdev_parameter_number(PGMDEV_PARAMETER_QWORD, "-1", nullptr, &value, nullptr), PGMDEV_STATUS_OK);
    EXPECT_EQ(value, UINT64_MAX);
    EXPECT_EQ(pgmdev_parameter_number(PGMDEV_PARAMETER_STRING, "1", nullptr, &value, nullptr),
              PGMDEV_STATUS_INVALID_ARGUMENT);
}

TEST_F(CParameters, WhoHoldsTheLockMayWriteAndTakeItAgain) {
    C_LOCK lock;
    C_LOCK again;
    ASSERT_EQ(pgmdev_parameter_lock_take(lock.place(), nullptr), PGMDEV_STATUS_OK);
    ASSERT_EQ(pgmdev_parameter_lock_take(again.place(), nullptr), PGMDEV_STATUS_OK);
    EXPECT_EQ(pgmdev_parameters_write(PGMDEV_PARAMETER_BLOCK_HPS_SPI, bytes(XY), 1, nullptr), PGMDEV_STATUS_OK);
}

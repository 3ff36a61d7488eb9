#include <gtest/gtest.h>

#include <string>

#include "pgmdev/parameters/conversion_request.h"
#include "pgmdev_flash_ini.h"
#include "support/reports.h"

// Texts to numbers and back, example by example.

namespace {

/// The error text; "" for success.
std::string error_of(const REQUEST& request) {
    const ANSWER answer = convert(request);
    EXPECT_EQ(answer.good, answer.error.empty());
    return answer.error;
}

TEST(FlashIniConversions, EmptyTextThatMustNotBe) {
    bool valid = false;
    const std::string condition = "!no_empty || !string.empty()";
    EXPECT_REPORT(PGMDEV_FLASH_INI::convert_string_to_qword("", true, &valid), condition);
    EXPECT_REPORT(PGMDEV_FLASH_INI::convert_string_to_qword("", true, nullptr), condition);
    EXPECT_EQ(PGMDEV_FLASH_INI::convert_string_to_qword("0x", true, &valid), 0U);  // is not empty
    EXPECT_TRUE(valid);
}

TEST(FlashIniConversions, LargestValueOfAType) {
    EXPECT_EQ(convert({PGMDEV_PARAM_BYTE, "-1"}), good(0xFF));
    EXPECT_EQ(convert({PGMDEV_PARAM_WORD, "-1"}), good(0xFFFF));
    EXPECT_EQ(convert({PGMDEV_PARAM_DWORD, "-1"}), good(0xFFFFFFFF));
    EXPECT_EQ(convert({PGMDEV_PARAM_QWORD, "-1"}), good(MOST));
    EXPECT_EQ(error_of({.type = PGMDEV_PARAM_WORD, .text = "-1", .multiple = 2}),
              "Calculation overflow compare to type");
    EXPECT_EQ(convert({.type = PGMDEV_PARAM_BYTE, .text = "-1", .exponent = true}), good(0xFF));
    EXPECT_EQ(error_of({.type = PGMDEV_PARAM_BYTE, .text = "-1", .power_of_two = true}), "Input must be power of 2");
}

TEST(FlashIniConversions, OverflowOfTheType) {
    EXPECT_EQ(convert({PGMDEV_PARAM_BYTE, "255"}), good(255));
    EXPECT_EQ(error_of({PGMDEV_PARAM_BYTE, "256"}), "Conversion overflow compare to type");
    EXPECT_EQ(error_of({PGMDEV_PARAM_WORD, "0x10000"}), "Conversion overflow compare to type");
    EXPECT_EQ(error_of({PGMDEV_PARAM_DWORD, "4294967296"}), "Conversion overflow compare to type");
    EXPECT_EQ(convert({PGMDEV_PARAM_QWORD, "18446744073709551615"}), good(MOST));
    for (const auto type : {PGMDEV_PARAM_BYTE, PGMDEV_PARAM_WORD, PGMDEV_PARAM_DWORD, PGMDEV_PARAM_QWORD}) {
        EXPECT_EQ(error_of({type, "18446744073709551616"}), "Conversion overflow compare to type");
        EXPECT_EQ(error_of({type, "0x10000000000000000"}), "Conversion overflow compare to type");
    }
}

TEST(FlashIniConversions, DigitsAreValidHoweverManyThereAre) {
    for (const std::string text : {"18446744073709551616", "0x10000000000000000", "100000000000000000000000"}) {
        bool valid = false;
        EXPECT_EQ(PGMDEV_FLASH_INI::convert_string_to_qword(text, true, &valid), MOST) << text;
        EXPECT_TRUE(valid) << text;
        EXPECT_EQ(PGMDEV_FLASH_INI::convert_string_to_qword(text, true, nullptr), MOST) << text;
    }
}

TEST(FlashIniConversions, Hexadecimal) {
    EXPECT_EQ(convert({.text = "12", .hex = true}), good(0x12));
    EXPECT_EQ(convert({.text = "0x12", .hex = true}), good(0x12));
    EXPECT_EQ(convert({.text = "0x12"}), good(0x12));
    EXPECT_EQ(convert({.text = "", .hex = true}), good(0));
    EXPECT_EQ(error_of({.text = "0X12", .hex = true}), "Invalid QWORD conversion");
    EXPECT_EQ(error_of({.text = "0x1G"}), "Invalid QWORD conversion");
}

TEST(FlashIniConversions, RangesLookAtTheLowHalf) {
    EXPECT_EQ(convert({.type = PGMDEV_PARAM_QWORD, .text = "0x500000007", .ranges = {1, 7, 7}}), good(0x500000007));
    EXPECT_EQ(error_of({.type = PGMDEV_PARAM_QWORD, .text = "0x700000000", .ranges = {1, 7, 7}}),
              "Input is out of range");
    EXPECT_EQ(error_of({.text = "7", .ranges = {0}}), "Input is out of range");
    // The bounds are cut to the type: 0x107 is 7 for a byte.
    EXPECT_EQ(convert({.type = PGMDEV_PARAM_BYTE, .text = "7", .ranges = {1, 0x107, 0x107}}), good(7));
    EXPECT_EQ(error_of({.type = PGMDEV_PARAM_WORD, .text = "6", .ranges = {1, 0, 0x10005}}), "Input is out of range");
}

TEST(FlashIniConversions, InvalidHits) {
    EXPECT_EQ(error_of({.text = "0x13", .hits = {2, 0xFF, 0x14, 0x0F, 0x03}}), "Input is invalid (hit)");
    EXPECT_EQ(convert({.text = "0x13", .hits = {1, 0xFF, 0x14}}), good(0x13));
    // A pattern is cut to the type, but not to its mask: what it has outside of that is never met.
    EXPECT_EQ(error_of({.type = PGMDEV_PARAM_BYTE, .text = "0x13", .hits = {1, 0x1FF, 0x113}}),
              "Input is invalid (hit)");
    EXPECT_EQ(convert({.text = "0x13", .hits = {1, 0x0F, 0x13}}), good(0x13));
    // A mask has 32 bits: the high half of a QWORD never counts.
    EXPECT_EQ(error_of({.type = PGMDEV_PARAM_QWORD, .text = "0x500000001", .hits = {1, 0xFFFFFFFF, 1}}),
              "Input is invalid (hit)");
}

TEST(FlashIniConversions, Exponent) {
    EXPECT_EQ(convert({.text = "4", .exponent = true, .multiple = 0}), good(16));
    EXPECT_EQ(convert({.text = "64", .exponent = true}), good(1));
    EXPECT_EQ(convert({.text = "95", .exponent = true}), good(0x80000000));
    EXPECT_EQ(convert({.type = PGMDEV_PARAM_BYTE, .text = "8", .exponent = true}), good(256));  // not held to the type
}

TEST(FlashIniConversions, Multiple) {
    EXPECT_EQ(convert({.text = "12", .multiple = 1000}), good(12000));
    EXPECT_EQ(error_of({.text = "0x10000", .multiple = 0x10000}), "Calculation overflow compare to type");
    // Multiplication wraps at 64 bits.
    EXPECT_EQ(convert({.type = PGMDEV_PARAM_QWORD, .text = "0x8000000000000001", .multiple = 2}), good(2));
    EXPECT_REPORT(convert({.text = "1", .multiple = 0}), "multiple != 0");
    EXPECT_REPORT(convert({.text = "-1", .exponent = true, .multiple = 0}), "multiple != 0");
}

TEST(FlashIniConversions, StringsAndBoolsAreNotChecked) {
    for (const auto type : {PGMDEV_PARAM_STRING, PGMDEV_PARAM_BOOL}) {
        EXPECT_EQ(convert({.type = type, .text = "anything", .power_of_two = true, .ranges = {0}, .multiple = 0}),
                  good(0));
    }
}

TEST(FlashIniConversions, UnknownTypesAreReported) {
    for (const DWORD type : {DWORD{0}, DWORD{7}, DWORD{0xFFFFFFFF}}) {
        EXPECT_REPORT(convert({static_cast<PGMDEV_PARAM_TYPE>(type), "1"}), "Unsupport param type");
    }
}

TEST(FlashIniConversions, NumberToText) {
    EXPECT_EQ(PGMDEV_FLASH_INI::convert_qword_to_string(0), "0");
    EXPECT_EQ(PGMDEV_FLASH_INI::convert_qword_to_string(1234567890123456789), "1234567890123456789");
    EXPECT_EQ(PGMDEV_FLASH_INI::convert_qword_to_string(MOST), "18446744073709551615");
}

TEST(FlashIniConversions, NumberToHexadecimalText) {
    EXPECT_EQ(PGMDEV_FLASH_INI::convert_dword_to_hex_string(0x123, 2, true), "0x23");
    EXPECT_EQ(PGMDEV_FLASH_INI::convert_qword_to_hex_string(0x123, 2, true), "0x23");
    const std::string digits = "FEDCBA9876543210";
    for (DWORD count = 1; count <= 16; ++count) {
        const std::string last = digits.substr(16 - count);
        EXPECT_EQ(PGMDEV_FLASH_INI::convert_qword_to_hex_string(0xFEDCBA9876543210, count, false), last);
        EXPECT_EQ(PGMDEV_FLASH_INI::convert_qword_to_hex_string(0xFEDCBA9876543210, count, true), "0x" + last);
        if (count <= 8) {
            EXPECT_EQ(PGMDEV_FLASH_INI::convert_dword_to_hex_string(0x76543210, count, false), last);
        }
    }
    EXPECT_EQ(PGMDEV_FLASH_INI::convert_dword_to_hex_string(10, 8, false), "0000000A");
    for (const DWORD count : {DWORD{0}, DWORD{17}, DWORD{0xFFFFFFFF}}) {
        EXPECT_REPORT(PGMDEV_FLASH_INI::convert_qword_to_hex_string(1, count, true), "count != 0 && count <= 16");
    }
    for (const DWORD count : {DWORD{0}, DWORD{9}, DWORD{0xFFFFFFFF}}) {
        EXPECT_REPORT(PGMDEV_FLASH_INI::convert_dword_to_hex_string(1, count, false), "count != 0 && count <= 8");
    }
}

}  // namespace

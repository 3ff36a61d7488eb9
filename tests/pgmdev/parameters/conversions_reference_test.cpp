#include <gtest/gtest.h>

#include <array>
#include <optional>
#include <string>
#include <vector>

#include "pgmdev/parameters/conversion_request.h"
#include "pgmdev_flash_ini.h"
#include "support/reports.h"

// Texts to numbers, all of many as a reference has it that is written plainly.

namespace {

/// The number that a text spells, written plainly: digit by digit, with an explicit test before each step.
std::optional<QWORD> reference_number(const std::string& text) {
    const bool hex = text.substr(0, 2) == "0x";
    const QWORD base = hex ? 16 : 10;
    QWORD number = 0;
    bool too_large = false;
    for (std::size_t i = hex ? 2 : 0; i < text.size(); ++i) {
        const std::string digits = "0123456789ABCDEFabcdef";
        std::size_t digit = digits.find(text[i]);
        if (digit == std::string::npos || (!hex && digit >= 10)) {
            return std::nullopt;
        }
        digit = digit >= 16 ? digit - 6 : digit;
        too_large = too_large || number > (MOST - digit) / base;
        number = number * base + digit;
    }
    return too_large ? MOST : number;
}

/// Whether the digits of a text spell more than 64 bits hold.
bool is_too_large(const std::string& text) {
    return text == "18446744073709551616" || text == "18446744073709551620" || text == "99999999999999999999" ||
           text == "0x10000000000000000" || text == "0x18446744073709551614" || text == "0x18446744073709551615" ||
           text == "0x18446744073709551616" || text == "0x18446744073709551620" || text == "0x99999999999999999999" ||
           text == "0x9223372036854775808";
}

const std::vector<std::string> TEXTS{
    "",
    "0",
    "1",
    "2",
    "7",
    "9",
    "10",
    "16",
    "127",
    "128",
    "200",
    "254",
    "255",
    "256",
    "257",
    "32768",
    "65534",
    "65535",
    "65536",
    "4294967294",
    "4294967295",
    "4294967296",
    "9223372036854775808",
    "18446744073709551614",
    "18446744073709551615",
    "18446744073709551616",
    "18446744073709551620",
    "99999999999999999999",
    "00000000000000000000000000000000000017",
    "0x",
    "0x0",
    "0x1",
    "0xF",
    "0xf",
    "0xFf",
    "0x100",
    "0xFFFF",
    "0x10000",
    "0xDeadBeef",
    "0xFFFFFFFF",
    "0x100000000",
    "0xFFFFFFFFFFFFFFFF",
    "0x10000000000000000",
    "0x00000000000000000000001",
    "-1",
    "-2",
    "-",
    "+1",
    " 1",
    "1 ",
    "1 2",
    "1x",
    "x1",
    "0X1",
    "0x1G",
    "0xG",
    "0x 1",
    "00x1",
    "0x0x1",
    "1A",
    "A",
    "a",
    "F",
    "1.0",
    "1e3",
    "12\n",
    "1\xC2\xB2",
    std::string("1\0", 2),
    std::string("\0", 1),
    "/",
    ":",
    "0x@",
    "0x`",
    "0xg",
    "12",
    "0x12",
    "not a number",
};

TEST(FlashIniConversions, TextToNumber) {
    for (const std::string& text : TEXTS) {
        const std::optional<QWORD> expected = reference_number(text);
        bool valid = !expected.has_value();
        EXPECT_EQ(PGMDEV_FLASH_INI::convert_string_to_qword(text, false, &valid), expected.value_or(0)) << text;
        EXPECT_EQ(valid, expected.has_value()) << text;
        if (expected) {
            EXPECT_EQ(PGMDEV_FLASH_INI::convert_string_to_qword(text, false, nullptr), *expected);
        } else {
            EXPECT_REPORT(PGMDEV_FLASH_INI::convert_string_to_qword(text, false, nullptr),
                          "Invalid string to integer conversion");
        }
        if (!text.empty()) {
            EXPECT_EQ(PGMDEV_FLASH_INI::convert_string_to_qword(text, true, &valid), expected.value_or(0));
        }
    }
}

/// The largest value of a type.
QWORD most_of(PGMDEV_PARAM_TYPE type) {
    switch (type) {
        case PGMDEV_PARAM_BYTE:
            return 0xFF;
        case PGMDEV_PARAM_WORD:
            return 0xFFFF;
        case PGMDEV_PARAM_DWORD:
            return 0xFFFFFFFF;
        default:
            return MOST;
    }
}

bool is_power_of_two(QWORD value, QWORD maximum) {
    unsigned set = 0;
    for (QWORD rest = value & maximum; rest != 0; rest /= 2) {
        set += rest % 2 != 0 ? 1U : 0U;
    }
    return set == 1;
}

/// Pairs of least and largest value; none lets every value pass.
bool is_inside(QWORD value, const std::vector<DWORD>& ranges, QWORD maximum) {
    const QWORD low = value & 0xFFFFFFFF;
    bool inside = ranges.empty();
    for (std::size_t i = 1; i < ranges.size(); i += 2) {
        inside = inside || (low >= (ranges[i] & maximum) && low <= (ranges[i + 1] & maximum));
    }
    return inside;
}

/// Pairs of mask and value.
bool is_hit(QWORD value, const std::vector<DWORD>& hits, QWORD maximum) {
    bool hit = false;
    for (std::size_t i = 1; i < hits.size(); i += 2) {
        hit = hit || (value & hits[i] & maximum) == (hits[i + 1] & maximum);
    }
    return hit;
}

/// What the checks behind the conversion itself find; "" for nothing.
std::string reference_objection(const REQUEST& r, QWORD value, QWORD maximum) {
    if (r.power_of_two && !is_power_of_two(value, maximum)) {
        return "Input must be power of 2";
    }
    if (!is_inside(value, r.ranges, maximum)) {
        return "Input is out of range";
    }
    return is_hit(value, r.hits, maximum) ? "Input is invalid (hit)" : "";
}

/// The steps of the checked conversion, each written on its own.
ANSWER reference_answer(const REQUEST& r) {
    if (r.type == PGMDEV_PARAM_STRING || r.type == PGMDEV_PARAM_BOOL) {
        return good(0);
    }
    const QWORD maximum = most_of(r.type);
    QWORD value = maximum;
    if (r.text != "-1") {
        const std::string text = r.hex && r.text.substr(0, 2) != "0x" ? "0x" + r.text : r.text;
        const auto number = reference_number(text);
        if (!number) {
            return {false, 0, "Invalid QWORD conversion"};
        }
        value = *number;
        if (value > maximum || is_too_large(text)) {
            return {false, value, "Conversion overflow compare to type"};
        }
    }
    if (const std::string objection = reference_objection(r, value, maximum); !objection.empty()) {
        return {false, value, objection};
    }
    if (r.exponent && value != maximum) {
        return good(QWORD{1} << (value % 64));
    }
    value *= r.multiple;
    if (value > maximum) {
        return {false, value, "Calculation overflow compare to type"};
    }
    return good(value);
}

/// Compares, for a text as each type and with every flag and multiple; counts what is converted.
void expect_as_the_reference(const REQUEST& request, unsigned& successes) {
    for (int flags = 0; flags < 8; ++flags) {
        for (const DWORD multiple : {DWORD{1}, DWORD{2}, DWORD{0xFFFFFFFF}}) {
            REQUEST each = request;
            each.hex = (flags & 1) != 0;
            each.power_of_two = (flags & 2) != 0;
            each.exponent = (flags & 4) != 0;
            each.multiple = multiple;
            const ANSWER answer = convert(each);
            const ANSWER expected = reference_answer(each);
            ASSERT_EQ(answer.error, expected.error);
            ASSERT_EQ(answer.good, expected.good);
            if (expected.good) {
                ASSERT_EQ(answer.value, expected.value);
                ++successes;
            }
        }
    }
}

TEST(FlashIniConversions, CheckedAgainstTheReference) {
    const std::vector<std::vector<DWORD>> ranges{{}, {0}, {1, 0, 255}, {2, 0, 0, 0x100, 0x1FFFF}, {1, 9, 0xFFFFFFFF}};
    const std::vector<std::vector<DWORD>> hits{{}, {0}, {1, 0xFF, 0}, {2, 0xFFFFFFFF, 7, 1, 1}};
    unsigned successes = 0;
    for (const auto type : {PGMDEV_PARAM_STRING, PGMDEV_PARAM_BOOL, PGMDEV_PARAM_BYTE, PGMDEV_PARAM_WORD,
                            PGMDEV_PARAM_DWORD, PGMDEV_PARAM_QWORD}) {
        for (const std::string& text : TEXTS) {
            SCOPED_TRACE(text + " as type " + std::to_string(type));
            for (const auto& range : ranges) {
                for (const auto& hit : hits) {
                    ASSERT_NO_FATAL_FAILURE(
                        expect_as_the_reference({.type = type, .text = text, .ranges = range, .hits = hit}, successes));
                }
            }
        }
    }
    EXPECT_GT(successes, 10000U);
}

}  // namespace

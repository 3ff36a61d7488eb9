#include <gtest/gtest.h>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "pgm_common.h"
#include "support/reports.h"

namespace {

using NUMBER = std::optional<std::uint32_t>;
constexpr std::nullopt_t NONE = std::nullopt;

/// A text, and the number it spells when hexadecimal is refused and when it is allowed.
struct CASE {
    std::string text;
    NUMBER decimal;
    NUMBER with_hex;
};

CASE same(std::string text, NUMBER number) {
    return {std::move(text), number, number};
}

CASE hex(std::string text, NUMBER number) {
    return {std::move(text), NONE, number};
}

std::vector<CASE> cases() {
    std::vector<CASE> all;
    const auto add = [&all](const std::vector<CASE>& more) { all.insert(all.end(), more.begin(), more.end()); };
    // Decimal digits, up to 32 bits.
    add({same("0", 0),
         same("1", 1),
         same("9", 9),
         same("10", 10),
         same("255", 255),
         same("256", 256),
         same("65535", 65535),
         same("65536", 65536),
         same("2147483647", 2147483647),
         same("2147483648", 2147483648),
         same("4294967294", 4294967294),
         same("4294967295", 4294967295),
         same("00", 0),
         same("007", 7),
         same("0000000000000000000000000000000000000255", 255),
         same("00000000004294967295", 4294967295),
         same("08", 8),
         same("09", 9),
         same("010", 10),
         same("1234567890", 1234567890)});
    // Too large, also where the excess would wrap around.
    add({same("4294967296", NONE), same("4294967297", NONE), same("5000000000", NONE), same("9999999999", NONE),
         same("42949672950", NONE), same("18446744073709551615", NONE), same("18446744073709551616", NONE),
         same("18446744073709551617", NONE), same("99999999999999999999999999999999999", NONE)});
    // Hexadecimal after 0x.
    add({hex("0x0", 0),
         hex("0X0", 0),
         hex("0x1", 1),
         hex("0xf", 15),
         hex("0xF", 15),
         hex("0Xf", 15),
         hex("0XF", 15),
         hex("0xff", 255),
         hex("0xFF", 255),
         hex("0xfF", 255),
         hex("0x10", 16),
         hex("0x0010", 16),
         hex("0xBA", 0xBA),
         hex("0x123456", 0x123456),
         hex("0x7FFFFFFF", 0x7FFFFFFF),
         hex("0x80000000", 0x80000000),
         hex("0xffffffff", 0xFFFFFFFF),
         hex("0xFFFFFFFF", 0xFFFFFFFF),
         hex("0xDeadBeef", 0xDEADBEEF),
         hex("0x000000000000000000000000FFFFFFFF", 0xFFFFFFFF),
         hex("0xabcdef", 0xABCDEF),
         hex("0x789", 0x789)});
    add({hex("0x100000000", NONE),
         hex("0xFFFFFFFFF", NONE),
         hex("0x10000000000000000", NONE),
         hex("0xFFFFFFFFFFFFFFFF", NONE),
         hex("0x", NONE),
         hex("0X", NONE),
         hex("0xg", NONE),
         hex("0xG", NONE),
         hex("0x1g", NONE),
         hex("0x 1", NONE),
         hex("0x1 ", NONE),
         hex(" 0x1", NONE),
         hex("0x-1", NONE),
         hex("0x+1", NONE),
         hex("0x0x1", NONE),
         hex("00x1", NONE),
         hex("1x1", NONE),
         hex("x1", NONE),
         hex("X1", NONE),
         hex("-0x1", NONE),
         hex("+0x1", NONE),
         hex("0x1.0", NONE),
         hex("0x1,", NONE),
         hex("0xx1", NONE),
         hex("0x1h", NONE),
         hex("0x_1", NONE),
         hex("0x1p1", NONE)});
    // Nothing else: no sign, no blanks, nothing behind the number, no other notation.
    for (const char* text : {"-1",
                             "-0",
                             "+1",
                             "+0",
                             "-",
                             "+",
                             "--1",
                             "-4294967295",
                             " ",
                             " 1",
                             "1 ",
                             "\t1",
                             "1\t",
                             "1\n",
                             "1\r",
                             "\v1",
                             "\f1",
                             "1 2",
                             "1,2",
                             "1,000",
                             "1.0",
                             "1.",
                             ".1",
                             "1e1",
                             "1E1",
                             "1u",
                             "1L",
                             "0b1",
                             "0o7",
                             "ff",
                             "FF",
                             "a",
                             "f",
                             "1f",
                             "12h",
                             "0h",
                             "$1",
                             "#1",
                             "\\x31",
                             "1_000",
                             "1'000",
                             "O",
                             "l",
                             "none",
                             "NONE",
                             "TRUE",
                             "(1)",
                             "\"1\"",
                             "\xEF\xBC\x91",
                             "\xD9\xA1",
                             "1\xC2\xA0",
                             "\xFF",
                             ("\x80"
                              "1"),
                             "/",
                             ":",
                             "1/",
                             "1:"}) {
        all.push_back(same(text, NONE));
    }
    all.push_back(same(std::string("1\0", 2), NONE));
    all.push_back(same(std::string("\0", 1), NONE));
    all.push_back(same(std::string("\0"
                                   "1",
                                   2),
                       NONE));
    all.push_back(hex(std::string("0x1\0", 4), NONE));
    all.push_back(hex(std::string("0x\0", 3), NONE));
    return all;
}

/// Converts in every way that the arguments allow, and expects `number` of each.
void expect_conversion(const std::string& text, bool no_empty, bool allow_hex, NUMBER number) {
    SCOPED_TRACE("\"" + text + "\"" + (no_empty ? ", not empty" : "") + (allow_hex ? ", with hexadecimal" : ""));
    const std::uint32_t expected = number.value_or(0);
    for (const bool with_value : {false, true}) {
        DWORD value = 0x5A5A5A5A;
        DWORD* const receiver = with_value ? &value : nullptr;

        bool ok = !number.has_value();
        EXPECT_EQ(PGM_COMMON::convert_string_to_dword(text, no_empty, &ok, receiver, allow_hex), expected);
        EXPECT_EQ(ok, number.has_value());
        EXPECT_EQ(value, with_value ? expected : 0x5A5A5A5A);

        value = 0x5A5A5A5A;
        const auto convert = [&] {
            EXPECT_EQ(PGM_COMMON::convert_string_to_dword(text, no_empty, nullptr, receiver, allow_hex), expected);
        };
        EXPECT_EQ(report_of(convert), number ? "(no report)" : "Invalid string to integer conversion");
        EXPECT_EQ(value, with_value ? expected : 0x5A5A5A5A);
    }
}

/// The rule, written plainly: what is between 0 and 32 bits of decimal digits, or of hexadecimal ones after "0x".
NUMBER spelled(const std::string& text, bool no_empty, bool allow_hex) {
    if (text.empty()) {
        return no_empty ? NUMBER() : NUMBER(0);
    }
    const bool hexadecimal = allow_hex && (text.substr(0, 2) == "0x" || text.substr(0, 2) == "0X");
    const std::string digits = hexadecimal ? text.substr(2) : text;
    const std::string alphabet = hexadecimal ? "0123456789abcdefABCDEF" : "0123456789";
    if (digits.empty() || digits.find_first_not_of(alphabet) != std::string::npos) {
        return NONE;
    }
    std::uint64_t number = 0;
    for (const char digit : digits) {
        const std::size_t place = alphabet.find(digit);
        number = number * (hexadecimal ? 16 : 10) + (place < 16 ? place : place - 6);
        if (number > 0xFFFFFFFF) {
            return NONE;
        }
    }
    return static_cast<std::uint32_t>(number);
}

}  // namespace

TEST(convert_string_to_dword, Table) {
    for (const CASE& each : cases()) {
        for (const bool no_empty : {false, true}) {
            expect_conversion(each.text, no_empty, false, each.decimal);
            expect_conversion(each.text, no_empty, true, each.with_hex);
        }
    }
}

TEST(convert_string_to_dword, EmptyTextIsZeroUnlessRefused) {
    for (const bool allow_hex : {false, true}) {
        expect_conversion("", false, allow_hex, 0);
        expect_conversion("", true, allow_hex, NONE);
    }
}

TEST(convert_string_to_dword, EveryShortText) {
    const std::string alphabet = "0129afFgxX +-.";
    std::vector<std::string> texts{""};
    for (std::size_t begin = 0; texts.back().size() < 4; ++begin) {
        for (const char c : alphabet) {
            texts.push_back(texts[begin] + c);
        }
    }
    for (const std::string& text : texts) {
        for (const bool no_empty : {false, true}) {
            for (const bool allow_hex : {false, true}) {
                const NUMBER expected = spelled(text, no_empty, allow_hex);
                bool ok = false;
                const DWORD number = PGM_COMMON::convert_string_to_dword(text, no_empty, &ok, nullptr, allow_hex);
                ASSERT_EQ(ok, expected.has_value()) << text;
                ASSERT_EQ(number, expected.value_or(0)) << text;
            }
        }
    }
}

TEST(convert_string_to_dword, AroundTheLargestNumber) {
    for (std::uint64_t number = 0xFFFFFFF0; number <= 0x10000000F; ++number) {
        const std::string text = std::to_string(number);
        expect_conversion(text, true, true, spelled(text, true, true));
    }
}

TEST(convert_string_to_dword, ReportNamesItsPlace) {
    const REPORTS reports;
    EXPECT_THROW(PGM_COMMON::convert_string_to_dword("x", true, nullptr, nullptr, true), MSG_INTERNAL_ERROR_EXCEPTION);
    ASSERT_EQ(reports.all().size(), 1U);
    EXPECT_NE(reports.all().front().module, "");
    EXPECT_NE(reports.all().front().file, "");
    EXPECT_GT(reports.all().front().line, 0);
}

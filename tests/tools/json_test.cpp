#include "terminal/json.h"

#include <gtest/gtest.h>

#include <limits>
#include <random>

#include "support/json.h"
#include "terminal/printable.h"

// What is written, and that copies of a value have what is in it in common, which nobody is to notice.

namespace {

JSON shared_values() {
    return {{"name", "W25Q128JV"}, {"bytes", JSON(std::vector<unsigned>{0xEF, 0x40})}, {"size", {{"mbit", 128U}}}};
}

constexpr const char* SHARED_VALUES = R"({"name":"W25Q128JV","bytes":[239,64],"size":{"mbit":128}})";

/// The same text written by another library, which the command does not use.
std::string by_another_writer(const std::string& text) {
    return printable_json(JSON_VALUE(text).dump());
}

}  // namespace

TEST(Json, ValuesOfEachKindOnOneLineAndOnMany) {
    const JSON value{{"nothing", nullptr},
                     {"facts", JSON(JSON::ARRAY{true, false})},
                     {"largest", std::numeric_limits<QWORD>::max()},
                     {"empty", JSON(JSON::ARRAY{JSON::array(), JSON::object(), ""})},
                     {"inner", {{"zero", 0U}}}};
    EXPECT_EQ(
        json_text(value),
        R"({"nothing":null,"facts":[true,false],"largest":18446744073709551615,"empty":[[],{},""],"inner":{"zero":0}})");
    EXPECT_EQ(readable_json_text(value), R"({
  "nothing": null,
  "facts": [
    true,
    false
  ],
  "largest": 18446744073709551615,
  "empty": [
    [],
    {},
    ""
  ],
  "inner": {
    "zero": 0
  }
})");
}

TEST(Json, CharactersThatMustBeEscaped) {
    EXPECT_EQ(json_text("\"\\/\b\f\n\r\t\x0B\x1F"), R"("\"\\/\b\f\n\r\t\u000b\u001f")");
    EXPECT_EQ(json_text(std::string("\0A", 2)), R"("\u0000A")");
    EXPECT_EQ(json_text("\\u000B"), R"("\\u000B")");  // letters that only look like an escape stay
    EXPECT_EQ(json_text({{"\x1B[2J", "\xC2\x9B"}}), R"({"\u001b[2J":"\u009b"})");
}

TEST(Json, WhatIsNoUtf8IsReplacedAsByAnotherWriter) {
    // The first and last bytes of each row of table 3-7 of the Unicode standard, those beside them, and escaped characters.
    constexpr std::string_view BYTES =
        "aB\\\x1F\x7F\x80\x8F\x90\x9F\xA0\xBF\xC0\xC1\xC2\xDF\xE0\xE1\xE2\xEC\xED\xEE\xEF\xF0\xF1\xF3\xF4\xF5\xFF";
    for (int first = 0; first < 256; ++first) {
        for (const char second : BYTES) {
            const std::string text{static_cast<char>(first), second};
            ASSERT_EQ(json_text(text), by_another_writer(text)) << printable(text);
        }
    }
    std::mt19937 random(1);  // NOLINT(cert-msc32-c,cert-msc51-cpp): the same in each run
    for (int i = 0; i < 10000; ++i) {
        std::string text(3 + random() % 4, ' ');
        std::generate(text.begin(), text.end(), [&] { return BYTES[random() % BYTES.size()]; });
        ASSERT_EQ(json_text(text), by_another_writer(text)) << printable(text);
    }
}

TEST(Json, ACopyIsChangedByItself) {
    const JSON original = shared_values();
    JSON copy = original;
    copy["bytes"].push_back(0x18U);
    copy["size"]["mbit"] = 256U;
    copy["maker"] = "Winbond";
    EXPECT_EQ(json_text(copy), R"({"name":"W25Q128JV","bytes":[239,64,24],"size":{"mbit":256},"maker":"Winbond"})");
    EXPECT_EQ(json_text(original), SHARED_VALUES);
}

TEST(Json, ACopyStaysWhenTheOriginalIsChanged) {
    JSON original = shared_values();
    const JSON copy = original;
    original["size"]["mbit"] = 256U;
    original["bytes"].push_back(nullptr);
    EXPECT_EQ(json_text(copy), SHARED_VALUES);
    EXPECT_EQ(json_text(original), R"({"name":"W25Q128JV","bytes":[239,64,null],"size":{"mbit":256}})");
}

TEST(Json, AnObjectHoldsACopyOfWhatIsPutIntoIt) {
    JSON part = shared_values();
    JSON whole{{"chip", part}};
    part["name"] = "other";
    whole["chip"]["size"] = nullptr;
    EXPECT_EQ(json_text(part), R"({"name":"other","bytes":[239,64],"size":{"mbit":128}})");
    EXPECT_EQ(json_text(whole), R"({"chip":{"name":"W25Q128JV","bytes":[239,64],"size":null}})");
}

TEST(Json, AppendedMembersComeLastOrReplaceThoseOfTheirName) {
    JSON object = shared_values();
    object.append({{"name", "W25Q64JV"}, {"maker", "Winbond"}});
    EXPECT_EQ(json_text(object), R"({"name":"W25Q64JV","bytes":[239,64],"size":{"mbit":128},"maker":"Winbond"})");
    object.append(object);
    EXPECT_EQ(json_text(object), R"({"name":"W25Q64JV","bytes":[239,64],"size":{"mbit":128},"maker":"Winbond"})");
}

#include <gtest/gtest.h>

#include "support/json.h"
#include "terminal/printable.h"

// What comes from files and command lines must not command a terminal.

TEST(printable, OrdinaryTextStaysAsItIs) {
    EXPECT_EQ(printable("W25Q128 \"x\", 3.3 V"), "W25Q128 \"x\", 3.3 V");
    EXPECT_EQ(printable("Ger\xC3\xA4t \xE5\x99\xA8\xE4\xBB\xB6 \xF0\x9F\x98\x80"),
              "Ger\xC3\xA4t \xE5\x99\xA8\xE4\xBB\xB6 \xF0\x9F\x98\x80");
}

TEST(printable, ControlCharactersOfBothKinds) {
    EXPECT_EQ(printable("\x1B[2J\n\x7F"), "\\x1B[2J\\x0A\\x7F");
    EXPECT_EQ(printable("\xC2\x9B"
                        "2J"),
              "\\xC2\\x9B2J");
    EXPECT_EQ(printable("\x9B"
                        "2J"),
              "\\x9B2J");  // as terminals of 8 bits read it
}

TEST(printable, DirectionsOfWriting) {
    // NOLINTBEGIN(misc-misleading-bidirectional): they are escaped
    EXPECT_EQ(printable("a\xE2\x80\xAE"
                        "b"),
              "a\\xE2\\x80\\xAEb");
    EXPECT_EQ(printable("\xE2\x81\xA7\xD8\x9C"), "\\xE2\\x81\\xA7\\xD8\\x9C");
    // NOLINTEND(misc-misleading-bidirectional)
}

TEST(printable, WhatIsNoUtf8) {
    EXPECT_EQ(printable("\xFF\xC0\x80\xE5\x99"), "\\xFF\\xC0\\x80\\xE5\\x99");
    EXPECT_EQ(printable("\xE5\x99z"), "\\xE5\\x99z");
    EXPECT_EQ(printable("\xE0\x9F\xBF\xF0\x8F\xBF\xBF"), "\\xE0\\x9F\\xBF\\xF0\\x8F\\xBF\\xBF");  // longer than needed
    EXPECT_EQ(printable("\xED\xA0\x80"), "\\xED\\xA0\\x80");                                      // half of a pair
    EXPECT_EQ(printable("\xF4\x90\x80\x80"), "\\xF4\\x90\\x80\\x80");                             // beyond U+10FFFF
}

TEST(printable, JsonKeepsItsValues) {
    // NOLINTNEXTLINE(misc-misleading-bidirectional): they are escaped
    const std::string text = "a\x1B\xC2\x9B\xE2\x80\xAE\xD8\x9C\x7F\xC3\xA4\xF0\x9F\x98\x80";
    const std::string shown = printable_json(JSON_VALUE(text).dump());
    EXPECT_EQ(shown, "\"a\\u001b\\u009b\\u202e\\u061c\\u007f\xC3\xA4\xF0\x9F\x98\x80\"");
    EXPECT_EQ(JSON_VALUE::parse(shown), JSON_VALUE(text));
}

TEST(printable, CellsAreNoFormulas) {
    EXPECT_EQ(printable_cell("=1+1"), "'=1+1");
    EXPECT_EQ(printable_cell("+1"), "'+1");
    EXPECT_EQ(printable_cell("-1"), "'-1");
    EXPECT_EQ(printable_cell("@SUM(1)"), "'@SUM(1)");
    EXPECT_EQ(printable_cell("\t=1"), "\\x09=1");
    EXPECT_EQ(printable_cell("W25Q64JV-IQ"), "W25Q64JV-IQ");
    EXPECT_EQ(printable_cell(""), "");
}

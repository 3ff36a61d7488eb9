#include <gtest/gtest.h>

#include "gen.h"

namespace {

TEST(GenNumber, DigitsOfABase) {
    EXPECT_EQ(gen_local_strtoQWORD("0", 10), 0U);
    EXPECT_EQ(gen_local_strtoQWORD("0018446744073709551615", 10), 0xFFFFFFFFFFFFFFFF);
    EXPECT_EQ(gen_local_strtoQWORD("FFFFffffFFFFfffe", 16), 0xFFFFFFFFFFFFFFFE);
    EXPECT_EQ(gen_local_strtoQWORD("101", 2), 5U);
    EXPECT_EQ(gen_local_strtoQWORD("", 10), 0U);
}

TEST(GenNumber, WhatDoesNotFitIsTheLargest) {
    for (const char* text : {"18446744073709551616", "99999999999999999999", "100000000000000000000000000000"}) {
        EXPECT_EQ(gen_local_strtoQWORD(text, 10), 0xFFFFFFFFFFFFFFFF) << text;
    }
    EXPECT_EQ(gen_local_strtoQWORD("10000000000000000", 16), 0xFFFFFFFFFFFFFFFF);
}

TEST(GenNumber, AnythingElseIsNone) {
    for (const char* text : {"1x", "x", "-1", "+1", " 1", "1 ", "0x1", "12A", "1.0", "99999999999999999999x"}) {
        EXPECT_EQ(gen_local_strtoQWORD(text, 10), 0U) << text;
    }
}

}  // namespace

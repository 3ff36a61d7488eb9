#include <gtest/gtest.h>

#include "gen.h"

namespace {

TEST(GenNumber, DigitsOfABase) {
    bool valid = false;
    EXPECT_EQ(gen_local_strtoQWORD("0", 10, &valid), 0U);
    EXPECT_TRUE(valid);
    EXPECT_EQ(gen_local_strtoQWORD("0018446744073709551615", 10, nullptr), 0xFFFFFFFFFFFFFFFF);
    EXPECT_EQ(gen_local_strtoQWORD("FFFFffffFFFFffff", 16, &valid), 0xFFFFFFFFFFFFFFFF);
    EXPECT_TRUE(valid);
    EXPECT_EQ(gen_local_strtoQWORD("101", 2, nullptr), 5U);
    valid = false;
    EXPECT_EQ(gen_local_strtoQWORD("", 10, &valid), 0U);
    EXPECT_TRUE(valid);
}

TEST(GenNumber, AnythingElseIsInvalid) {
    for (const char* text :
         {"18446744073709551616", "99999999999999999999", "1x", "x", "-1", "+1", " 1", "1 ", "0x1", "12A", "1.0"}) {
        bool valid = true;
        EXPECT_EQ(gen_local_strtoQWORD(text, 10, &valid), 0U) << text;
        EXPECT_FALSE(valid) << text;
    }
    bool valid = true;
    EXPECT_EQ(gen_local_strtoQWORD("10000000000000000", 16, &valid), 0U);
    EXPECT_FALSE(valid);
}

}  // namespace

#include <gtest/gtest.h>

#include "gen.h"
#include "support/settings.h"
#include "ver.h"

namespace {

TEST(ver, IsThatOfTheProject) {
    EXPECT_EQ(ver_get_version(), TEST_PROJECT_VERSION);
    EXPECT_EQ(ver_get_current_version_index_number() & 0xFF, 0U) << "no service pack";
}

TEST(ver, CanBeSetForTheProcess) {
    const std::string own = ver_get_version();
    const DWORD own_index = ver_get_current_version_index_number();
    {
        const TOOL_VERSION version("7.1.0", 2, 345);
        EXPECT_EQ(ver_get_version(), "7.1.0");
        EXPECT_EQ(ver_get_current_version_index_number(), 2U + 345U * 256U);
    }
    EXPECT_EQ(ver_get_version(), own);
    EXPECT_EQ(ver_get_current_version_index_number(), own_index);
}

TEST(gen_ascii_toupper, ChangesAsciiLettersOnly) {
    EXPECT_EQ(gen_ascii_toupper("azAZ09@[`{ \xE4\xFF"), "AZAZ09@[`{ \xE4\xFF");
    EXPECT_EQ(gen_ascii_toupper(std::string("a\0b", 3)), std::string("A\0B", 3));
    EXPECT_EQ(gen_ascii_toupper(""), "");
}

TEST(gen_itoa, GivesDecimals) {
    EXPECT_EQ(gen_itoa(0), "0");
    EXPECT_EQ(gen_itoa(65535), "65535");
    EXPECT_EQ(gen_itoa(-2147483647 - 1), "-2147483648");
}

}  // namespace

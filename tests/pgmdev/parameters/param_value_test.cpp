#include "pgmdev_param_value.h"

#include <gtest/gtest.h>

#include "support/reports.h"

// A value of any type in a block.

namespace {

constexpr QWORD NUMBER = 0x123456789ABCDEF0;

PGMDEV_PARAM_VALUE number_of(PGMDEV_PARAM_TYPE type) {
    PGMDEV_PARAM_VALUE value(type);
    value.set_number(NUMBER);
    return value;
}

TEST(ParamValue, IsEmptyAtFirst) {
    EXPECT_EQ(PGMDEV_PARAM_VALUE(PGMDEV_PARAM_STRING).get(), PGMDEV_PARAM_VALUE::OBJECT(std::string()));
    EXPECT_EQ(PGMDEV_PARAM_VALUE(PGMDEV_PARAM_BOOL).get(), PGMDEV_PARAM_VALUE::OBJECT(false));
    EXPECT_EQ(PGMDEV_PARAM_VALUE(PGMDEV_PARAM_BYTE).get(), PGMDEV_PARAM_VALUE::OBJECT(BYTE{0}));
    EXPECT_EQ(PGMDEV_PARAM_VALUE(PGMDEV_PARAM_WORD).get(), PGMDEV_PARAM_VALUE::OBJECT(WORD{0}));
    EXPECT_EQ(PGMDEV_PARAM_VALUE(PGMDEV_PARAM_DWORD).get(), PGMDEV_PARAM_VALUE::OBJECT(DWORD{0}));
    EXPECT_EQ(PGMDEV_PARAM_VALUE(PGMDEV_PARAM_QWORD).get(), PGMDEV_PARAM_VALUE::OBJECT(QWORD{0}));
}

TEST(ParamValue, TakesTheLowBitsOfANumber) {
    EXPECT_EQ(number_of(PGMDEV_PARAM_BOOL).get(), PGMDEV_PARAM_VALUE::OBJECT(true));
    EXPECT_EQ(number_of(PGMDEV_PARAM_BYTE).get(), PGMDEV_PARAM_VALUE::OBJECT(BYTE{0xF0}));
    EXPECT_EQ(number_of(PGMDEV_PARAM_WORD).get(), PGMDEV_PARAM_VALUE::OBJECT(WORD{0xDEF0}));
    EXPECT_EQ(number_of(PGMDEV_PARAM_DWORD).get(), PGMDEV_PARAM_VALUE::OBJECT(DWORD{0x9ABCDEF0}));
    EXPECT_EQ(number_of(PGMDEV_PARAM_QWORD).get(), PGMDEV_PARAM_VALUE::OBJECT(NUMBER));
}

TEST(ParamValue, TextsAndNumbersAreNotMixed) {
    PGMDEV_PARAM_VALUE text(PGMDEV_PARAM_STRING);
    PGMDEV_PARAM_VALUE number(PGMDEV_PARAM_WORD);
    EXPECT_THROW(text.set_number(1), std::bad_variant_access);
    EXPECT_THROW(number.set_text("1"), std::bad_variant_access);
    EXPECT_EQ(number.get(), PGMDEV_PARAM_VALUE::OBJECT(WORD{0}));
}

TEST(ParamValue, GoesIntoABlockAndComesBack) {
    PGMDEV_PARAM_VALUE text(PGMDEV_PARAM_STRING);
    text.set_text("text");
    std::vector<PGMDEV_PARAM_VALUE> values{text};
    for (const PGMDEV_PARAM_TYPE type :
         {PGMDEV_PARAM_BOOL, PGMDEV_PARAM_BYTE, PGMDEV_PARAM_WORD, PGMDEV_PARAM_DWORD, PGMDEV_PARAM_QWORD}) {
        values.push_back(number_of(type));
    }
    std::vector<BYTE> block{0xAA};
    for (PGMDEV_PARAM_VALUE& value : values) {
        pgmdev_append_param(block, value.type(), value.object());
    }
    EXPECT_EQ(block, (std::vector<BYTE>{0xAA, 't',  'e',  'x',  't',  0,    1,    0xF0, 0xF0, 0xDE, 0xF0,
                                        0xDE, 0xBC, 0x9A, 0xF0, 0xDE, 0xBC, 0x9A, 0x78, 0x56, 0x34, 0x12}));

    DWORD position = 1;
    for (const PGMDEV_PARAM_VALUE& value : values) {
        PGMDEV_PARAM_VALUE read(value.type());
        EXPECT_TRUE(pgmdev_read_param(block.data(), static_cast<DWORD>(block.size()), position, read));
        EXPECT_EQ(read.get(), value.get());
    }
    EXPECT_EQ(position, block.size());
}

TEST(ParamValue, ThatABlockDoesNotHoldLeavesThePosition) {
    const std::vector<BYTE> block{1, 2, 3, 4, 5};
    const auto size = static_cast<DWORD>(block.size());
    for (const PGMDEV_PARAM_TYPE type : {PGMDEV_PARAM_STRING, PGMDEV_PARAM_DWORD, PGMDEV_PARAM_QWORD}) {
        PGMDEV_PARAM_VALUE value(type);
        DWORD position = 2;
        EXPECT_FALSE(pgmdev_read_param(block.data(), size, position, value));
        EXPECT_EQ(position, 2U);
    }
    PGMDEV_PARAM_VALUE cut(PGMDEV_PARAM_QWORD);
    DWORD position = 1;
    EXPECT_TRUE(pgmdev_read_param(block.data(), size, position, cut));
    EXPECT_EQ(cut.get(), PGMDEV_PARAM_VALUE::OBJECT(QWORD{0x05040302}));
    EXPECT_EQ(position, 9U);
}

TEST(ParamValue, OfAnUnknownTypeIsWhatOperationsSayOfIt) {
    for (const DWORD number : {0U, 7U, 0xFFFFFFFFU}) {
        PGMDEV_PARAM_VALUE value(static_cast<PGMDEV_PARAM_TYPE>(number));
        EXPECT_EQ(value.type(), number);
        std::vector<BYTE> block{1, 2, 3, 4, 5, 6, 7, 8};
        DWORD position = 0;
        EXPECT_FALSE(pgmdev_read_param(block.data(), static_cast<DWORD>(block.size()), position, value));
        EXPECT_REPORT(pgmdev_append_param(block, value.type(), value.object()), "Unsupport param type");
        EXPECT_EQ(block.size(), 8U);
    }
}

}  // namespace

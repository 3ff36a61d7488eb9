#include <gtest/gtest.h>

#include <array>
#include <string>
#include <vector>

#include "pgmdev_flash_ini.h"
#include "support/reports.h"

// Typed values in a block, and as text.

namespace {

constexpr auto UNKNOWN_TYPES = {DWORD{0}, DWORD{7}, DWORD{255}, DWORD{0xFFFFFFFF}};

PGMDEV_PARAM_TYPE type_of(DWORD number) {
    return static_cast<PGMDEV_PARAM_TYPE>(number);
}

/// One value of each type, with the pointer table that the codec takes.
struct RECORD {
    std::string text;
    bool flag = false;
    BYTE byte = 0;
    WORD word = 0;
    DWORD dword = 0;
    QWORD qword = 0;
    std::array<void*, 6> values{&text, &flag, &byte, &word, &dword, &qword};
};

constexpr std::array TYPES{PGMDEV_PARAM_STRING, PGMDEV_PARAM_BOOL,  PGMDEV_PARAM_BYTE,
                           PGMDEV_PARAM_WORD,   PGMDEV_PARAM_DWORD, PGMDEV_PARAM_QWORD};

const std::string ENCODED("text\0\1\x7E\x34\x12\x78\x56\x34\x12\xF0\xDE\xBC\x9A\x78\x56\x34\x12", 21);

/// Decodes from a buffer of exactly the block's size, so that a sanitizer sees every read beyond it.
bool decode(const std::string& block, DWORD& position, DWORD count, const PGMDEV_PARAM_TYPE* types, void** values) {
    const std::vector<BYTE> exact(block.begin(), block.end());
    return PGMDEV_FLASH_INI::assign_flash_ini_data(exact.data(), position, static_cast<DWORD>(block.size()), count,
                                                   types, values);
}

/// Decodes one value of a type.
template <class VALUE>
bool decode_one(const std::string& block, DWORD& position, PGMDEV_PARAM_TYPE type, VALUE& value) {
    void* pointer = &value;
    return decode(block, position, 1, &type, &pointer);
}

TEST(FlashIniCodec, TypesHaveTheirNumbers) {
    EXPECT_EQ(PGMDEV_PARAM_STRING, 1U);
    EXPECT_EQ(PGMDEV_PARAM_BOOL, 2U);
    EXPECT_EQ(PGMDEV_PARAM_BYTE, 3U);
    EXPECT_EQ(PGMDEV_PARAM_WORD, 4U);
    EXPECT_EQ(PGMDEV_PARAM_DWORD, 5U);
    EXPECT_EQ(PGMDEV_PARAM_QWORD, 6U);
    EXPECT_EQ(PGMDEV_FLASH_INI_SFL_FLASH, 0U);
    EXPECT_EQ(PGMDEV_FLASH_INI_HPS_SPI, 1U);
    EXPECT_EQ(PGMDEV_FLASH_INI_HPS_NAND, 2U);
    EXPECT_EQ(sizeof(PGMDEV_PARAM_TYPE), 4U);
    EXPECT_EQ(sizeof(PGMDEV_FLASH_INI_ENUM), 4U);
    EXPECT_EQ(PGMDEV_FLASH_INI_NAMES[0], "SFL FLASH");
    EXPECT_EQ(PGMDEV_FLASH_INI_NAMES[1], "HPS SPI");
    EXPECT_EQ(PGMDEV_FLASH_INI_NAMES[2], "HPS NAND");
}

TEST(FlashIniCodec, SizesEncodesAndDecodesEveryType) {
    RECORD record;
    record.text = "text";
    record.flag = true;
    record.byte = 0x7E;
    record.word = 0x1234;
    record.dword = 0x12345678;
    record.qword = 0x123456789ABCDEF0;
    constexpr std::array<DWORD, 6> SIZES{5, 1, 1, 2, 4, 8};
    DWORD size = 0;
    for (std::size_t i = 0; i < TYPES.size(); ++i) {
        const DWORD before = size;
        PGMDEV_FLASH_INI::calculate_flash_ini_data_size(size, TYPES[i], record.values[i]);
        EXPECT_EQ(size - before, SIZES[i]);
    }
    ASSERT_EQ(size, 21U);

    std::string block(size, '\0');
    DWORD position = 0;
    for (std::size_t i = 0; i < TYPES.size(); ++i) {
        PGMDEV_FLASH_INI::fillup_flash_ini_data(reinterpret_cast<BYTE*>(block.data()), position, TYPES[i],
                                                record.values[i]);
    }
    EXPECT_EQ(position, size);
    EXPECT_EQ(block, ENCODED);

    RECORD decoded;
    position = 0;
    EXPECT_TRUE(decode(block, position, 6, TYPES.data(), decoded.values.data()));
    EXPECT_EQ(position, 21U);
    EXPECT_EQ(decoded.text, "text");
    EXPECT_TRUE(decoded.flag);
    EXPECT_EQ(decoded.byte, 0x7E);
    EXPECT_EQ(decoded.word, 0x1234);
    EXPECT_EQ(decoded.dword, 0x12345678U);
    EXPECT_EQ(decoded.qword, 0x123456789ABCDEF0U);
}

TEST(FlashIniCodec, TheZeroBehindAStringIsNotWritten) {
    std::string block(4, '#');
    std::string text = "ab";
    DWORD position = 1;
    PGMDEV_FLASH_INI::fillup_flash_ini_data(reinterpret_cast<BYTE*>(block.data()), position, PGMDEV_PARAM_STRING,
                                            &text);
    EXPECT_EQ(block, "#ab#");
    EXPECT_EQ(position, 4U);
}

TEST(FlashIniCodec, NothingIsDecodedForACountOfZero) {
    DWORD position = 7;
    EXPECT_TRUE(PGMDEV_FLASH_INI::assign_flash_ini_data(nullptr, position, 0, 0, nullptr, nullptr));
    EXPECT_EQ(position, 7U);
}

TEST(FlashIniCodec, BlockThatEndsInTheMiddleOfARecord) {
    for (std::size_t length = 0; length < ENCODED.size(); ++length) {
        RECORD record;
        DWORD position = 0;
        const bool whole = decode(ENCODED.substr(0, length), position, 6, TYPES.data(), record.values.data());
        EXPECT_EQ(whole, length >= 17) << length;  // 13 bytes, and the low half of the QWORD
        EXPECT_EQ(record.text, length >= 5 ? "text" : "");
        EXPECT_EQ(record.flag, length >= 6);
        EXPECT_EQ(record.byte, length >= 7 ? 0x7E : 0);
        EXPECT_EQ(record.word, length >= 9 ? 0x1234 : 0);
        EXPECT_EQ(record.dword, length >= 13 ? 0x12345678U : 0);
        // The bytes of the QWORD that are missing count as zeros.
        const QWORD present = length >= 17 ? 0x123456789ABCDEF0 & ~QWORD{0} >> (64 - 8 * (length - 13)) : 0;
        EXPECT_EQ(record.qword, present) << length;
    }
}

TEST(FlashIniCodec, FlagsAreOneByte) {
    for (bool flag : {false, true}) {
        BYTE byte = 0xCC;
        DWORD position = 0;
        PGMDEV_FLASH_INI::fillup_flash_ini_data(&byte, position, PGMDEV_PARAM_BOOL, &flag);
        EXPECT_EQ(byte, flag ? 1 : 0);
        EXPECT_EQ(position, 1U);
    }
}

TEST(FlashIniCodec, PositionBehindAValue) {
    const std::string block("abc\0\1\2\3\4\5\6\7", 11);
    const auto behind = [&block](PGMDEV_PARAM_TYPE type, DWORD position, bool expected) {
        RECORD record;
        void* value = type >= 1 && type <= 6 ? record.values.at(type - 1) : nullptr;
        EXPECT_EQ(decode(block, position, 1, &type, &value), expected);
        return position;
    };
    EXPECT_EQ(behind(PGMDEV_PARAM_STRING, 0, true), 4U);
    EXPECT_EQ(behind(PGMDEV_PARAM_STRING, 3, true), 4U);
    EXPECT_EQ(behind(PGMDEV_PARAM_STRING, 4, false), 12U);  // the end of the block, and one
    EXPECT_EQ(behind(PGMDEV_PARAM_BOOL, 10, true), 11U);
    EXPECT_EQ(behind(PGMDEV_PARAM_BYTE, 10, true), 11U);
    EXPECT_EQ(behind(PGMDEV_PARAM_WORD, 9, true), 11U);
    EXPECT_EQ(behind(PGMDEV_PARAM_WORD, 10, false), 11U);
    EXPECT_EQ(behind(PGMDEV_PARAM_DWORD, 7, true), 11U);
    EXPECT_EQ(behind(PGMDEV_PARAM_DWORD, 8, false), 9U);
    EXPECT_EQ(behind(PGMDEV_PARAM_QWORD, 3, true), 11U);
    EXPECT_EQ(behind(PGMDEV_PARAM_QWORD, 7, true), 15U);
    EXPECT_EQ(behind(PGMDEV_PARAM_QWORD, 8, false), 9U);
    EXPECT_EQ(behind(type_of(7), 2, false), 3U);
    for (const DWORD outside : {DWORD{11}, DWORD{12}, DWORD{0xFFFFFFFF}}) {
        EXPECT_EQ(behind(PGMDEV_PARAM_BYTE, outside, false), outside);
        EXPECT_EQ(behind(PGMDEV_PARAM_QWORD, outside, false), outside);
    }
}

TEST(FlashIniCodec, QwordAcrossTheEndTakesZeros) {
    DWORD position = 0;
    QWORD value = ~QWORD{0};
    EXPECT_TRUE(decode_one("\x11\x22\x33\x44", position, PGMDEV_PARAM_QWORD, value));
    EXPECT_EQ(value, 0x44332211U);
    EXPECT_EQ(position, 8U);
    position = 0;
    value = 5;
    EXPECT_FALSE(decode_one("\x11\x22\x33", position, PGMDEV_PARAM_QWORD, value));
    EXPECT_EQ(value, 5U);
}

TEST(FlashIniCodec, QwordInTheMiddleOfARecordEndsIt) {
    QWORD qword = 0;
    BYTE byte = 9;
    const std::array types{PGMDEV_PARAM_QWORD, PGMDEV_PARAM_BYTE};
    std::array<void*, 2> values{&qword, &byte};
    DWORD position = 0;
    EXPECT_FALSE(decode("\1\2\3\4\5", position, 2, types.data(), values.data()));
    EXPECT_EQ(qword, 0x0504030201U);
    EXPECT_EQ(byte, 9);
    EXPECT_EQ(position, 8U);
}

TEST(FlashIniCodec, StringWithoutAnEndIsNotAssigned) {
    std::string text = "before";
    DWORD position = 1;
    EXPECT_FALSE(decode_one("abc", position, PGMDEV_PARAM_STRING, text));
    EXPECT_EQ(text, "before");
    EXPECT_EQ(position, 4U);
}

TEST(FlashIniCodec, EveryByteButZeroIsTrue) {
    for (int byte = 0; byte < 256; ++byte) {
        bool value = byte == 0;
        DWORD position = 0;
        EXPECT_TRUE(decode_one(std::string(1, static_cast<char>(byte)), position, PGMDEV_PARAM_BOOL, value));
        EXPECT_EQ(value, byte != 0);
    }
}

TEST(FlashIniCodec, ReadingEndsAtTheFirstFailure) {
    BYTE first = 0;
    BYTE last = 9;
    const std::array types{PGMDEV_PARAM_BYTE, type_of(0), PGMDEV_PARAM_BYTE};
    std::array<void*, 3> values{&first, nullptr, &last};
    DWORD position = 0;
    const REPORTS reports;
    EXPECT_FALSE(decode("\1\2\3", position, 3, types.data(), values.data()));
    EXPECT_EQ(first, 1);
    EXPECT_EQ(last, 9);
    EXPECT_EQ(position, 2U);
    EXPECT_TRUE(reports.all().empty());
}

TEST(FlashIniCodec, UnknownTypesAreReported) {
    for (const DWORD number : UNKNOWN_TYPES) {
        QWORD value = 0;
        DWORD size = 3;
        EXPECT_REPORT(PGMDEV_FLASH_INI::calculate_flash_ini_data_size(size, type_of(number), &value),
                      "Unsupport param type");
        BYTE buffer[8]{};
        EXPECT_REPORT(PGMDEV_FLASH_INI::fillup_flash_ini_data(buffer, size, type_of(number), &value),
                      "Unsupport param type");
        EXPECT_REPORT(PGMDEV_FLASH_INI::print_flash_ini_data(type_of(number), true, &value), "Unsupport param type");
        EXPECT_EQ(size, 3U);
    }
}

TEST(FlashIniCodec, ValuesAsText) {
    RECORD record;
    record.text = "as it is\n";
    record.byte = 0xA;
    record.word = 0xABC;
    record.dword = 0xABCDE;
    record.qword = 0xABCDEF0123;
    const auto text = [&record](std::size_t i, bool hex) {
        return PGMDEV_FLASH_INI::print_flash_ini_data(TYPES[i], hex, record.values[i]);
    };
    for (const bool hex : {false, true}) {
        EXPECT_EQ(text(0, hex), "as it is\n");
        record.flag = true;
        EXPECT_EQ(text(1, hex), "True");
        record.flag = false;
        EXPECT_EQ(text(1, hex), "False");
    }
    EXPECT_EQ(text(2, true), "0x0A");
    EXPECT_EQ(text(3, true), "0x0ABC");
    EXPECT_EQ(text(4, true), "0x000ABCDE");
    EXPECT_EQ(text(5, true), "0x000000ABCDEF0123");
    EXPECT_EQ(text(2, false), "10");
    EXPECT_EQ(text(3, false), "2748");
    EXPECT_EQ(text(4, false), "703710");
    EXPECT_EQ(text(5, false), "737894400291");
}

TEST(FlashIniCodec, SizesThatDoNotFitAreReported) {
    DWORD size = 0xFFFFFFFE;
    BYTE byte = 0;
    std::string text;
    PGMDEV_FLASH_INI::calculate_flash_ini_data_size(size, PGMDEV_PARAM_BYTE, &byte);
    EXPECT_EQ(size, 0xFFFFFFFFU);
    EXPECT_REPORT(PGMDEV_FLASH_INI::calculate_flash_ini_data_size(size, PGMDEV_PARAM_BYTE, &byte),
                  "size <= 0xFFFFFFFF");
    EXPECT_REPORT(PGMDEV_FLASH_INI::calculate_flash_ini_data_size(size, PGMDEV_PARAM_STRING, &text),
                  "size <= 0xFFFFFFFF");
    EXPECT_EQ(size, 0xFFFFFFFFU);
}

}  // namespace

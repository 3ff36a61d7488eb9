#include <gtest/gtest.h>

#include <memory>
#include <random>

#include "pgm_common.h"
#include "support/repeatable_random.h"
#include "support/reports.h"
#include "support/sha256.h"

namespace {

constexpr DWORD PRESET = 0xFFFFFFFF;
constexpr DWORD POLYNOMIAL = 0x04C11DB7;

DWORD crc(const std::string& data, QWORD first_bit, QWORD bit_count, DWORD initial = PRESET,
          DWORD polynomial = POLYNOMIAL, bool msb_first = true) {
    return PGM_COMMON::msb_calculate_crc32(reinterpret_cast<const BYTE*>(data.data()), first_bit, bit_count, initial,
                                           polynomial, msb_first);
}

/// One bit after another.
DWORD plain_crc(const std::string& data, QWORD first_bit, QWORD bit_count, DWORD initial, DWORD polynomial,
                bool msb_first) {
    DWORD value = initial;
    for (QWORD bit = first_bit; bit < first_bit + bit_count; ++bit) {
        const DWORD byte = static_cast<unsigned char>(data[bit / 8]);
        const DWORD input = (msb_first ? byte >> (7 - bit % 8) : byte >> bit % 8) & 1U;
        const DWORD top = value >> 31;
        value <<= 1;
        if (top != input) {
            value ^= polynomial;
        }
    }
    return value;
}

std::string random_bytes(std::mt19937& random, std::size_t count) {
    std::string bytes(count, '\0');
    for (char& byte : bytes) {
        byte = static_cast<char>(random());
    }
    return bytes;
}

TEST(MsbCrc32, PublishedCheckValues) {
    const std::string check = "123456789";
    EXPECT_EQ(~crc(check, 0, 72), 0xFC891918U);                // CRC-32/BZIP2
    EXPECT_EQ(crc(check, 0, 72), 0x0376E6E7U);                 // CRC-32/MPEG-2
    EXPECT_EQ(~crc(check, 0, 72, 0), 0x765E7680U);             // CRC-32/CKSUM
    EXPECT_EQ(crc(check, 0, 72, 0, 0x814141AB), 0x3010BF7FU);  // CRC-32/AIXM
    EXPECT_EQ(crc(check, 0, 72, 0, 0x000000AF), 0xBD0BE338U);  // CRC-32/XFER
}

TEST(MsbCrc32, NoBitsLeaveThePreset) {
    EXPECT_EQ(PGM_COMMON::msb_calculate_crc32(nullptr, 0, 0, 0x12345678, POLYNOMIAL, true), 0x12345678U);
}

TEST(MsbCrc32, EveryLengthAndAlignment) {
    auto random = repeatable_random(1);
    for (std::size_t length = 0; length < 70; ++length) {
        for (std::size_t offset = 0; offset < 3; ++offset) {
            const std::string data = random_bytes(random, offset + length);
            EXPECT_EQ(crc(data, 8 * offset, 8 * length),
                      plain_crc(data, 8 * offset, 8 * length, PRESET, POLYNOMIAL, true))
                << length << " from " << offset;
        }
    }
}

TEST(MsbCrc32, AnyBitsPresetPolynomialAndOrder) {
    auto random = repeatable_random(2);
    for (int round = 0; round < 3000; ++round) {
        const std::string data = random_bytes(random, 40);
        const QWORD first = random() % 100;
        const QWORD count = random() % 200;
        const auto initial = static_cast<DWORD>(random());
        const DWORD polynomial = round % 2 == 0 ? POLYNOMIAL : static_cast<DWORD>(random());
        const bool msb_first = round % 3 != 0;
        ASSERT_EQ(crc(data, first, count, initial, polynomial, msb_first),
                  plain_crc(data, first, count, initial, polynomial, msb_first));
    }
}

TEST(MsbCrc32, MayBeTakenInPieces) {
    auto random = repeatable_random(3);
    const std::string data = random_bytes(random, 1000);
    EXPECT_EQ(crc(data, 4005, 3995, crc(data, 0, 4005)), crc(data, 0, 8000));
}

std::string digest(const std::string& data) {
    const std::unique_ptr<BYTE[]> bytes(PGM_COMMON::get_block_sha(data.data(), data.size(), 32));
    return {bytes.get(), bytes.get() + 32};
}

TEST(BlockSha, PublishedVectors) {
    const auto hex = [](const std::string& bytes) {
        std::string text;
        for (const char byte : bytes) {
            constexpr char DIGITS[] = "0123456789abcdef";
            text += DIGITS[static_cast<unsigned char>(byte) >> 4];
            text += DIGITS[static_cast<unsigned char>(byte) & 15];
        }
        return text;
    };
    EXPECT_EQ(hex(digest("")), "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855");
    EXPECT_EQ(hex(digest("abc")), "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad");
}

TEST(BlockSha, AgreesWithAnotherImplementation) {
    auto random = repeatable_random(4);
    for (std::size_t length = 0; length < 300; ++length) {
        const std::string data = random_bytes(random, length);
        const auto expected = independent_sha256(data);
        ASSERT_EQ(digest(data), std::string(expected.begin(), expected.end())) << length;
    }
}

TEST(BlockSha, ReportsEveryOtherSize) {
    EXPECT_REPORT(PGM_COMMON::get_block_sha("", 0, 20), "digest_size == 32");
    EXPECT_REPORT(PGM_COMMON::get_block_sha("", 0, 0), "digest_size == 32");
}

TEST(CompareString, ComparesBytesOrIgnoresCase) {
    EXPECT_TRUE(PGM_COMMON::compare_string("", "", false));
    EXPECT_TRUE(PGM_COMMON::compare_string("Name", "Name", false));
    EXPECT_FALSE(PGM_COMMON::compare_string("Name", "NAME", false));
    EXPECT_TRUE(PGM_COMMON::compare_string("Name", "NAME", true));
    EXPECT_FALSE(PGM_COMMON::compare_string("Name", "Name ", true));
    EXPECT_FALSE(PGM_COMMON::compare_string("Name", "Nam", false));
    EXPECT_FALSE(PGM_COMMON::compare_string(std::string("A\0B", 3), std::string("A\0C", 3), false));
    EXPECT_FALSE(PGM_COMMON::compare_string("\xC4", "\xE4", true));
}

}  // namespace

#include <gtest/gtest.h>

#include <array>
#include <memory>
#include <string>
#include <vector>

#include "pgmdev/flash/fixture.h"
#include "pgmdev/flash/probe.h"
#include "pgmdev/packed/written.h"
#include "support/reports.h"

// The primitives of the packed encoding, as deriving classes call them.

namespace {

using BYTES = std::vector<BYTE>;

class PackedPrimitives : public testing::Test {
protected:
    FLASH_PROBE m_manager;
    DWORD m_index = 0;
};

TEST_F(PackedPrimitives, NumbersAreLittleEndian) {
    const BYTES data{0xFF, 0x78, 0x56, 0x34, 0x12, 5, 0x34, 0x12, 6, 0xEF, 0xBE, 0xAD, 0xDE, 4, 0x7F};
    m_index = 1;
    EXPECT_EQ(m_manager.get_dword(data.data(), m_index), 0x12345678U);
    WORD word = 0;
    m_manager.get_word_data(data.data(), m_index, &word);
    EXPECT_EQ(word, 0x1234);
    DWORD dword = 0;
    m_manager.get_dword_data(data.data(), m_index, &dword);
    EXPECT_EQ(dword, 0xDEADBEEF);
    BYTE byte = 0;
    m_manager.get_byte_data(data.data(), m_index, &byte);
    EXPECT_EQ(byte, 0x7F);
    EXPECT_EQ(m_index, data.size());
}

TEST_F(PackedPrimitives, BoolsAreZeroOrOne) {
    bool value = false;
    const BYTES data{3, 1, 3, 0, 3, 2};
    m_manager.get_bool_data(data.data(), m_index, &value);
    EXPECT_TRUE(value);
    m_manager.get_bool_data(data.data(), m_index, &value);
    EXPECT_FALSE(value);
    EXPECT_REPORT(m_manager.get_bool_data(data.data(), m_index, &value), "value == 0 || value == 1");
}

TEST_F(PackedPrimitives, TextsAreLengthPrefixedAndMayBeEmpty) {
    const BYTES data{2, 3, 'a', 0, 'c', 2, 0};
    std::string text = "old";
    m_manager.get_string_data(data.data(), m_index, &text);
    EXPECT_EQ(text, std::string("a\0c", 3));
    m_manager.get_string_data(data.data(), m_index, &text);
    EXPECT_EQ(text, "");
    EXPECT_EQ(m_index, data.size());
}

TEST_F(PackedPrimitives, EveryReaderAcceptsItsOwnTagOnly) {
    for (unsigned tag = 0; tag < 256; ++tag) {
        const BYTES data{static_cast<BYTE>(tag), 0, 0, 0, 0};
        const auto expected = [tag](unsigned own, const char* text) {
            return tag == own ? "(no report)" : std::string(text);
        };
        DWORD index = 0;
        bool flag = false;
        EXPECT_REPORT(m_manager.get_bool_data(data.data(), index, &flag), expected(3, "type == PGMDEV_MANAGER_BOOL"));
        index = 0;
        BYTE byte = 0;
        EXPECT_REPORT(m_manager.get_byte_data(data.data(), index, &byte), expected(4, "type == PGMDEV_MANAGER_BYTE"));
        index = 0;
        WORD word = 0;
        EXPECT_REPORT(m_manager.get_word_data(data.data(), index, &word), expected(5, "type == PGMDEV_MANAGER_WORD"));
        index = 0;
        DWORD dword = 0;
        EXPECT_REPORT(m_manager.get_dword_data(data.data(), index, &dword),
                      expected(6, "type == PGMDEV_MANAGER_DWORD"));
        index = 0;
        std::string text;
        EXPECT_REPORT(m_manager.get_string_data(data.data(), index, &text),
                      expected(2, "type == PGMDEV_MANAGER_STRING"));
    }
}

TEST_F(PackedPrimitives, MarkersAreCheckedCharacterByCharacter) {
    const auto record_end = [&](std::string text) {
        const BYTES data(text.begin(), text.end());
        DWORD index = 0;
        return report_of([&] { m_manager.confirm_data_type_end(data.data(), index); });
    };
    EXPECT_EQ(record_end("END1"), "(no report)");
    EXPECT_EQ(record_end("eND1"), "data[index++] == 'E'");
    EXPECT_EQ(record_end("EnD1"), "data[index++] == 'N'");
    EXPECT_EQ(record_end("ENd1"), "data[index++] == 'D'");
    EXPECT_EQ(record_end("END2"), "data[index++] == '1'");
    const BYTES end1{'E', 'N', 'D', '1'};
    EXPECT_REPORT(m_manager.confirm_database_end(end1.data(), m_index), "data[index++] == '2'");
    const BYTES end2{'x', 'E', 'N', 'D', '2'};
    m_index = 1;
    m_manager.confirm_database_end(end2.data(), m_index);
    EXPECT_EQ(m_index, 5U);
}

TEST_F(PackedPrimitives, WritesHeaderWordsWithoutATag) {
    EXPECT_EQ(written([&](BYTE** data, DWORD& index) { m_manager.dump_dword_database(data, index, 0x12345678); }),
              (BYTES{0x78, 0x56, 0x34, 0x12}));
}

TEST_F(PackedPrimitives, WritesBoolsFromTheirExactSpelling) {
    const auto dump = [&](const char* text) {
        return written([&](BYTE** data, DWORD& index) { m_manager.dump_bool_to_database(data, index, text); });
    };
    EXPECT_EQ(dump("TRUE"), (BYTES{3, 1}));
    EXPECT_EQ(dump("FALSE"), (BYTES{3, 0}));
    for (const char* text : {"", "true", "True", "1", "0", "TRUE ", "FALS"}) {
        EXPECT_REPORT(dump(text), R"(string == "FALSE" || string == "TRUE")") << text;
    }
}

TEST_F(PackedPrimitives, WritesTheLowBytesOfNumbers) {
    const auto dump = [&](const char* text, DWORD count) {
        return written([&](BYTE** data, DWORD& index) { m_manager.dump_value_to_database(data, index, text, count); });
    };
    EXPECT_EQ(dump("511", 1), (BYTES{4, 0xFF}));
    EXPECT_EQ(dump("0x12345678", 1), (BYTES{4, 0x78}));
    EXPECT_EQ(dump("0X12345678", 2), (BYTES{5, 0x78, 0x56}));
    EXPECT_EQ(dump("4294967295", 4), (BYTES{6, 0xFF, 0xFF, 0xFF, 0xFF}));
    EXPECT_EQ(dump("007", 4), (BYTES{6, 7, 0, 0, 0}));
    for (const DWORD count : {0U, 3U, 5U, 8U, 0xFFFFFFFFU}) {
        EXPECT_REPORT(dump("1", count), "count == 1 || count == 2 || count == 4");
    }
    EXPECT_REPORT(dump("", 1), "string.size() > 0");
    EXPECT_REPORT(dump("", 3), "string.size() > 0");  // the empty cell is checked before the width
    for (const char* text : {"x", "0x", "-1", "+1", "1 ", " 1", "1.0", "4294967296", "0x100000000", "1u", "0b1"}) {
        EXPECT_REPORT(dump(text, 4), "Invalid string to integer conversion") << text;
    }
}

TEST_F(PackedPrimitives, ANumberThatIsNoneIsNotWrittenAlsoUnderAReporterThatReturns) {
    const RETURNING_REPORTER reporter;
    BYTES buffer(8);
    BYTE* data = buffer.data();
    DWORD index = 0;
    EXPECT_THROW(m_manager.dump_value_to_database(&data, index, "x", 4), MSG_INTERNAL_ERROR_EXCEPTION);
    EXPECT_EQ(index, 0U);
    EXPECT_EQ(reporter.modules(), (std::vector<std::string>{"PGM_COMMON", "PGMDEV"}));
}

TEST_F(PackedPrimitives, WritesTextsWithTheLowByteOfTheirLength) {
    const auto dump = [&](const std::string& text) {
        return written([&](BYTE** data, DWORD& index) { m_manager.dump_string_to_database(data, index, text); });
    };
    EXPECT_EQ(dump("abc"), (BYTES{2, 3, 'a', 'b', 'c'}));
    EXPECT_REPORT(dump(""), "string.size() > 0");
    BYTES expected(2 + 260, 'x');  // all characters are written behind a length of 4
    expected[0] = 2;
    expected[1] = 4;
    EXPECT_EQ(dump(std::string(260, 'x')), expected);
}

TEST_F(PackedPrimitives, TheChecksumIsAlwaysZero) {
    const BYTES data{1, 2, 3};
    EXPECT_EQ(m_manager.calculate_crc16(data.data(), 3), 0);
    EXPECT_EQ(m_manager.calculate_crc16(data.data(), 0), 0);
    EXPECT_EQ(m_manager.calculate_crc16(nullptr, 0), 0);
}

TEST_F(PackedPrimitives, CompressionKeepsTheHeadAndRestoresTheBody) {
    BYTES data(1000);
    for (std::size_t i = 0; i < data.size(); ++i) {
        data[i] = static_cast<BYTE>(i * i);
    }
    for (const DWORD offset : {0U, 1U, 44U, 999U}) {
        DWORD count = 0;
        const std::unique_ptr<BYTE[]> packed(m_manager.compress_data(data.data(), offset, 1000, count));
        ASSERT_GT(count, offset);
        EXPECT_EQ(BYTES(packed.get(), packed.get() + offset), BYTES(data.begin(), data.begin() + offset));
        const std::string stream(packed.get() + offset, packed.get() + count);
        EXPECT_EQ(flash_reference::inflated(stream, 1000 - offset), std::string(data.begin() + offset, data.end()));
        const std::unique_ptr<BYTE[]> body(
            m_manager.decompress_data(packed.get() + offset, count - offset, 1000 - offset));
        EXPECT_EQ(BYTES(body.get(), body.get() + 1000 - offset), BYTES(data.begin() + offset, data.end()));
    }
    DWORD count = 0;
    EXPECT_REPORT(m_manager.compress_data(data.data(), 44, 44, count), "offset < count");
    EXPECT_REPORT(m_manager.compress_data(data.data(), 1, 0, count), "offset < count");
    EXPECT_REPORT(m_manager.compress_data(data.data(), 44, 0xFFFFFFFF, count), "offset < count");  // nor has it room
}

TEST_F(PackedPrimitives, DecompressionTakesExactlyTheStatedSize) {
    const std::string stream = flash_reference::deflated("hello, hello, hello");
    const BYTES data(stream.begin(), stream.end());
    const auto size = static_cast<DWORD>(data.size());
    constexpr const char* FAILED =
        "zlib_uncompress(decompressed_data, &new_dcmp_size, data, decompressed_count) == ZLIB_OK";
    const auto report = [&](DWORD compressed, DWORD original) {
        return report_of([&] { delete[] m_manager.decompress_data(data.data(), compressed, original); });
    };
    EXPECT_EQ(report(size, 19), "(no report)");
    EXPECT_EQ(report(size, 20), "new_dcmp_size == original_count");
    EXPECT_EQ(report(size, 0xFFFFFFFF), "new_dcmp_size == original_count");  // and takes no 4 GiB to say so
    EXPECT_EQ(report(size, 18), FAILED);
    EXPECT_EQ(report(size - 1, 19), FAILED);
    EXPECT_EQ(report(1, 19), FAILED);
    EXPECT_EQ(report(0, 19), "decompressed_count > 0 && original_count > 0");
    EXPECT_EQ(report(size, 0), "decompressed_count > 0 && original_count > 0");
}

TEST_F(PackedPrimitives, DecompressesWhatDeflateCompressesBest) {
    const std::string zeros(50'000'000, '\0');  // NOLINT(bugprone-string-constructor): it is meant to be long
    const std::string stream = flash_reference::deflated(zeros);
    EXPECT_GT(zeros.size() / stream.size(), 1000U);
    const auto* data = reinterpret_cast<const BYTE*>(stream.data());
    const std::unique_ptr<BYTE[]> body(m_manager.decompress_data(data, static_cast<DWORD>(stream.size()), 50'000'000));
    EXPECT_EQ(body[49'999'999], 0);
}

TEST_F(PackedPrimitives, MemberNamesAreThoseOfTheRecordInOrder) {
    ASSERT_EQ(FLASH_PROBE::TOTAL_DATABASE_MEMBER, flash_reference::MEMBERS);
    for (std::size_t i = 0; i < flash_reference::MEMBERS; ++i) {
        EXPECT_EQ(FLASH_PROBE::m_name_list[i], flash_reference::COLUMNS[i].name);
    }
}

TEST(FlashRecord, TakesEightyFiveBytesAndItsTexts) {
    EXPECT_EQ(flash_reference::empty_record_size(), 85U);
}

}  // namespace

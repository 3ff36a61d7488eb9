#include <gtest/gtest.h>

#include <memory>

#include "pgmdev/packed/written.h"
#include "pgmdev/profiles/fixture.h"
#include "pgmdev/profiles/probe.h"
#include "support/reports.h"

// The primitives of the packed encoding where this database differs from the flash database.

namespace {

using BYTES = std::vector<BYTE>;

class DevInfoPrimitives : public testing::Test {
protected:
    BYTES dumped_enum(const std::string& name, const std::string& type_name) {
        return written(
            [&](BYTE** data, DWORD& index) { m_manager.dump_enum_to_database(data, index, name, type_name); });
    }
    BYTES dumped_value(const std::string& text, DWORD count) {
        return written([&](BYTE** data, DWORD& index) { m_manager.dump_value_to_database(data, index, text, count); });
    }

    DEV_INFO_PROBE m_manager;
};

TEST_F(DevInfoPrimitives, ANumberThatIsNoneIsNotWrittenAlsoUnderAReporterThatReturns) {
    const RETURNING_REPORTER reporter;
    BYTES buffer(8);
    BYTE* data = buffer.data();
    DWORD index = 0;
    EXPECT_THROW(m_manager.dump_value_to_database(&data, index, "x", 4), MSG_INTERNAL_ERROR_EXCEPTION);
    EXPECT_EQ(index, 0U);
    EXPECT_EQ(reporter.modules(), (std::vector<std::string>{"PGM_COMMON", "PGMDEV"}));
}

TEST_F(DevInfoPrimitives, EveryReaderAcceptsItsOwnTagsOnly) {
    for (unsigned tag = 0; tag < 256; ++tag) {
        const BYTES data{static_cast<BYTE>(tag), 0, 0, 0, 0};
        const auto expected = [](bool accepted, const char* text) {
            return accepted ? "(no report)" : std::string(text);
        };
        DWORD index = 0;
        bool flag = false;
        EXPECT_REPORT(m_manager.get_bool_data(data.data(), index, &flag),
                      expected(tag == 3, "type == PGMDEV_MANAGER_BOOL"));
        index = 0;
        BYTE byte = 0;
        EXPECT_REPORT(m_manager.get_byte_data(data.data(), index, &byte),
                      expected(tag == 4, "type == PGMDEV_MANAGER_BYTE"));
        index = 0;
        WORD word = 0;
        EXPECT_REPORT(m_manager.get_word_data(data.data(), index, &word),
                      expected(tag == 5, "type == PGMDEV_MANAGER_WORD"));
        index = 0;
        DWORD dword = 0;
        EXPECT_REPORT(
            m_manager.get_dword_data(data.data(), index, &dword),
            expected(
                tag == 0 || tag == 6 || tag == 7,
                "type == PGMDEV_MANAGER_DEVID_ENUM || type == PGMDEV_MANAGER_DWORD || type == PGMDEV_MANAGER_ENUM"));
        index = 0;
        std::string text;
        EXPECT_REPORT(
            m_manager.get_string_data(data.data(), index, true, &text),
            expected(tag == 1 || tag == 2, "type == PGMDEV_MANAGER_DEVID_STR || type == PGMDEV_MANAGER_STRING"));
    }
}

TEST_F(DevInfoPrimitives, TextsAreEmptyOnlyWhereAllowed) {
    const BYTES data{2, 0, 1, 2, 'a', 'b'};
    DWORD index = 0;
    std::string text = "old";
    m_manager.get_string_data(data.data(), index, true, &text);
    EXPECT_EQ(text, "");
    m_manager.get_string_data(data.data(), index, false, &text);
    EXPECT_EQ(text, "ab");
    index = 0;
    text = "from before";
    EXPECT_REPORT(m_manager.get_string_data(data.data(), index, false, &text), "allow_empty");
    EXPECT_EQ(text, "");

    const auto dump = [&](bool allow_empty, const std::string& value, PGMDEV_MANAGER_TYPE type) {
        return written(
            [&](BYTE** buffer, DWORD& at) { m_manager.dump_string_to_database(buffer, at, allow_empty, value, type); });
    };
    EXPECT_EQ(dump(true, "", PGMDEV_MANAGER_STRING), (BYTES{2, 0}));
    EXPECT_EQ(dump(false, "ab", PGMDEV_MANAGER_DEVID_STR), (BYTES{1, 2, 'a', 'b'}));
    EXPECT_EQ(dump(false, std::string(257, 'x'), PGMDEV_MANAGER_STRING)[1], 1);  // only the low byte of the length
    EXPECT_REPORT(dump(false, "", PGMDEV_MANAGER_STRING), "string.size() > 0 || allow_empty");
    EXPECT_REPORT(dump(true, "a", PGMDEV_MANAGER_BOOL),
                  "type == PGMDEV_MANAGER_DEVID_STR || type == PGMDEV_MANAGER_STRING");
}

TEST_F(DevInfoPrimitives, BoolsAreEmptyFalseOrTrue) {
    const auto dump = [&](const std::string& text) {
        return written([&](BYTE** data, DWORD& index) { m_manager.dump_bool_to_database(data, index, text); });
    };
    EXPECT_EQ(dump(""), (BYTES{3, 0}));
    EXPECT_EQ(dump("FALSE"), (BYTES{3, 0}));
    EXPECT_EQ(dump("TRUE"), (BYTES{3, 1}));
    for (const char* text : {"true", "1", "True", " TRUE"}) {
        EXPECT_REPORT(dump(text), R"(string == "" || string == "FALSE" || string == "TRUE")");
    }
}

TEST_F(DevInfoPrimitives, NumbersKeepTheirLowBytes) {
    EXPECT_EQ(dumped_value("511", 1), (BYTES{4, 0xFF}));
    EXPECT_EQ(dumped_value("0x12345", 2), (BYTES{5, 0x45, 0x23}));
    EXPECT_EQ(dumped_value("0xFFFFFFFF", 4), (BYTES{6, 0xFF, 0xFF, 0xFF, 0xFF}));
    EXPECT_EQ(dumped_value("", 4), (BYTES{6, 0, 0, 0, 0}));
    EXPECT_REPORT(dumped_value("1", 3), "count == 1 || count == 2 || count == 4");
    EXPECT_REPORT(dumped_value("x", 0), "count == 1 || count == 2 || count == 4");
    EXPECT_REPORT(dumped_value("-1", 4), "Invalid string to integer conversion");
    EXPECT_EQ(m_manager.get_dword_from_string("0x10"), 16U);
}

TEST_F(DevInfoPrimitives, EveryGenericEnumerator) {
    const std::vector<std::pair<const char*, unsigned>> table{
        {"DEV_FAMILY_KESTREL", 6},    {"DEV_FAMILY_OSPREY", 65}, {"DEV_FAMILY_HERON", 61},
        {"DEV_FAMILY_MERLIN", 50},    {"NPCF_BLOCK_CRAM", 37},   {"NPCF_BLOCK_ERAM", 38},
        {"NPCF_BLOCK_CB_HEADER2", 6}, {"PGMIO_AVST_X8", 20},     {"DEV_FAMILY_PETREL", 54},
        {"DEV_FAMILY_PLOVER", 63},    {"DEV_FAMILY_SHRIKE", 71}, {"NPCF_BLOCK_POSTAMBLE", 39}};
    for (const auto& [name, value] : table) {
        EXPECT_EQ(dumped_enum(name, ""), (BYTES{7, static_cast<BYTE>(value), 0, 0, 0})) << name;
    }
    EXPECT_EQ(dumped_enum("", ""), (BYTES{7, 0xFF, 0xFF, 0xFF, 0xFF}));
    for (const char* name : {"dev_family_kestrel", "KESTREL", "NPCF_BLOCK", "37", "DEV_FAMILY_RAVEN"}) {
        EXPECT_REPORT(dumped_enum(name, ""), "found");
    }
}

TEST_F(DevInfoPrimitives, IdentifiersByName) {
    for (int family = 1; family <= 72; ++family) {
        const std::string name = dev_info_reference::family_name(family);
        EXPECT_EQ(dumped_enum(name, "family"), (BYTES{7, static_cast<BYTE>(family), 0, 0, 0}));
        EXPECT_EQ(m_manager.convert_id_enum_to_string("family", static_cast<DWORD>(family)), name);
    }
    EXPECT_EQ(dev_info_reference::family_name(72), "GENERIC");
    EXPECT_EQ(dumped_enum("", "family"), (BYTES{7, 0, 0, 0, 0}));
    EXPECT_EQ(dumped_enum("GENERIC", "device"), (BYTES{7, 0xDE, 0x03, 0, 0}));  // 990
    EXPECT_EQ(dumped_enum("", "device"), (BYTES{7, 0, 0, 0, 0}));
    const auto generic = static_cast<unsigned>(DEV_PART_GENERIC);
    EXPECT_EQ(dumped_enum("GENERIC", "part"), (BYTES{7, static_cast<BYTE>(generic), static_cast<BYTE>(generic >> 8),
                                                     static_cast<BYTE>(generic >> 16), 0}));
    EXPECT_EQ(dumped_enum("", "part")[1], static_cast<BYTE>(DEV_PART_INVALID));
    EXPECT_REPORT(dumped_enum("Kestrel", "family"), "found");
    EXPECT_REPORT(dumped_enum("AVOR20", "device"), "found");
    EXPECT_REPORT(dumped_enum("AVOR20", "part"), "found");
    EXPECT_REPORT(dumped_enum("GENERIC", "Device"), "type_name.empty()");
    EXPECT_REPORT(dumped_enum("", "pcf"), "type_name.empty()");
}

TEST_F(DevInfoPrimitives, IdentifiersToNames) {
    EXPECT_EQ(m_manager.convert_id_enum_to_string("family", 0), "");
    EXPECT_EQ(m_manager.convert_id_enum_to_string("device", 990), "GENERIC");
    EXPECT_EQ(m_manager.convert_id_enum_to_string("device", 0), "");
    EXPECT_EQ(m_manager.convert_id_enum_to_string("part", static_cast<DWORD>(DEV_PART_GENERIC)), "GENERIC");
    EXPECT_EQ(m_manager.convert_id_enum_to_string("part", static_cast<DWORD>(DEV_PART_INVALID)), "");
    EXPECT_REPORT(m_manager.convert_id_enum_to_string("family", 73), "id < DWORD(DEV_FAMILY_MAX)");
    EXPECT_REPORT(m_manager.convert_id_enum_to_string("device", 991), "id < DWORD(DEV_DEVICE_MAX)");
    EXPECT_REPORT(m_manager.convert_id_enum_to_string("part", static_cast<DWORD>(DEV_PART_MAX)),
                  "id < DWORD(DEV_PART_MAX)");
    const REPORTS reports;
    EXPECT_EQ(m_manager.convert_id_enum_to_string("pcf", 0), "");
    ASSERT_EQ(reports.all().size(), 1U);
    EXPECT_EQ(reports.all()[0].condition, "Unsupported type name");
    EXPECT_EQ(reports.all()[0].file, "pgm/pgmdev/pgmdev_dev_info_manager");
}

TEST_F(DevInfoPrimitives, MarkersAndHeaderWords) {
    const BYTES data{'E', 'N', 'D', '1', 'E', 'N', 'D', '2', 0x78, 0x56, 0x34, 0x12};
    DWORD index = 0;
    m_manager.confirm_data_type_end(data.data(), index);
    m_manager.confirm_database_end(data.data(), index);
    EXPECT_EQ(m_manager.get_dword(data.data(), index), 0x12345678U);
    EXPECT_EQ(index, 12U);
    EXPECT_EQ(written([&](BYTE** out, DWORD& at) { m_manager.dump_dword_database(out, at, 0x12345678); }),
              (BYTES{0x78, 0x56, 0x34, 0x12}));
    index = 0;
    EXPECT_REPORT(m_manager.confirm_database_end(data.data(), index), "data[index++] == '2'");
}

TEST_F(DevInfoPrimitives, CompressionKeepsTheHeadAndTheChecksumIsZero) {
    BYTES data(200, 7);
    DWORD size = 0;
    const std::unique_ptr<BYTE[]> packed(m_manager.compress_data(data.data(), 44, 200, size));
    ASSERT_GT(size, 44U);
    EXPECT_EQ(BYTES(packed.get(), packed.get() + 44), BYTES(44, 7));
    const std::unique_ptr<BYTE[]> plain(m_manager.decompress_data(packed.get() + 44, size - 44, 156));
    EXPECT_EQ(BYTES(plain.get(), plain.get() + 156), BYTES(156, 7));
    EXPECT_REPORT(m_manager.compress_data(data.data(), 200, 200, size), "offset < count");
    EXPECT_REPORT(m_manager.decompress_data(data.data(), 0, 1), "decompressed_count > 0 && original_count > 0");
    EXPECT_EQ(m_manager.calculate_crc16(data.data(), 200), 0);
}

}  // namespace

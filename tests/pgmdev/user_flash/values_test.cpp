#include <gtest/gtest.h>

#include "msg.h"
#include "pgmdev/user_flash/reference.h"
#include "support/console.h"

// The values of a description: finding them, accepting them, listing them.

namespace {

namespace ref = user_flash_reference;
using ROW = PGMDEV_SFL_FLASH_INFO;
using TEXTS = std::vector<std::string>;

class UserFlashValues : public testing::Test {
protected:
    bool assign(const ref::CHANGES& changes) {
        TEXTS values = ref::values();
        for (const auto& [member, value] : changes) {
            values[ref::place(member)] = value;
        }
        m_manager.m_ini_flash_info = ROW();
        return m_manager.assign_ini(values.data());
    }

    USER_FLASH_PROBE m_manager;
};

const TEXTS BOOLS{"silicon_id",    "default_dev",       "extended_mode", "micron_flow",
                  "spansion_flow", "startup_protected", "aai_mode",      "flag_status",
                  "half_size",     "byte4_addressing",  "sdm_support"};

const std::vector<std::pair<std::string, BYTE ROW::*>> SIGNED_BYTES{
    {"memory_id", &ROW::memory_id},     {"memory_id_index", &ROW::memory_id_index},
    {"memory_type", &ROW::memory_type}, {"memory_type_index", &ROW::memory_type_index},
    {"mfc_id", &ROW::mfc_id},           {"mfc_id_index", &ROW::mfc_id_index},
    {"orvane_id", &ROW::orvane_id},
};

const std::vector<std::pair<std::string, BYTE ROW::*>> UNSIGNED_BYTES{
    {"die_count", &ROW::die_count},
    {"protection_mask", &ROW::protection_mask},
    {"protection_value", &ROW::protection_value},
    {"unprotect_value", &ROW::unprotect_value},
    {"protection_division", &ROW::protection_division},
    {"bottom_value", &ROW::bottom_value},
};

const std::vector<std::pair<std::string, DWORD ROW::*>> DWORDS{
    {"device_bit_size", &ROW::device_bit_size}, {"device_sector_byte", &ROW::device_sector_byte},
    {"bulk_erase_time", &ROW::bulk_erase_time}, {"sec_erase_time", &ROW::sec_erase_time},
    {"program_utime", &ROW::program_utime},
};

const std::vector<std::pair<std::string, std::string ROW::*>> STRINGS{
    {"manufacturer_name", &ROW::manufacturer_name},
    {"device_name", &ROW::device_name},
    {"ini", &ROW::ini},
    {"asc_voltage", &ROW::asc_voltage},
};

TEST_F(UserFlashValues, EveryMemberIsTested) {
    EXPECT_EQ(BOOLS.size() + SIGNED_BYTES.size() + UNSIGNED_BYTES.size() + DWORDS.size() + STRINGS.size(), 33U);
}

TEST_F(UserFlashValues, AreTakenInMemberOrder) {
    EXPECT_TRUE(assign({}));
    EXPECT_EQ(m_manager.m_ini_flash_info, ref::record());
}

TEST_F(UserFlashValues, FlagsAreOneCharacter) {
    for (const std::string& member : BOOLS) {
        EXPECT_TRUE(assign({{member, "1"}})) << member;
        EXPECT_TRUE(assign({{member, "0"}})) << member;
        for (const std::string refused : {"", "2", "01", "10", "1 ", " 1", "TRUE", "Y", "-1"}) {
            EXPECT_FALSE(assign({{member, refused}})) << member << " " << refused;
        }
    }
    TEXTS all = ref::values();
    for (const std::string& member : BOOLS) {
        all[ref::place(member)] = "1";
    }
    ASSERT_TRUE(m_manager.assign_ini(all.data()));
    const ROW& r = m_manager.m_ini_flash_info;
    EXPECT_TRUE(r.silicon_id && r.default_dev && r.extended_mode && r.micron_flow && r.spansion_flow);
    EXPECT_TRUE(r.startup_protected && r.aai_mode && r.flag_status && r.half_size && r.byte4_addressing);
    EXPECT_TRUE(r.sdm_support);
}

struct SPELLING {
    std::string text;
    int value;  ///< -1: refused
};

TEST_F(UserFlashValues, SomeBytesMayBeNegative) {
    const std::vector<SPELLING> spellings{
        {"0", 0},
        {"255", 255},
        {"256", -1},
        {"-1", 255},
        {"-256", 0},
        {"-257", 255},
        {"", 0},
        {"X", 0},
        {"7X", 7},
        {" +9", 9},
        {"\t\n12 3", 12},
        {"0X12", 0},
        {"2147483647", -1},
        {"2147483648", 0},
        {"-2147483648", 0},
        {"4294967295", 255},
        {"4294967296", 0},
        {"4294967552", -1},
        {"4294967297", 1},
    };
    for (const auto& [member, field] : SIGNED_BYTES) {
        for (const SPELLING& spelling : spellings) {
            EXPECT_EQ(assign({{member, spelling.text}}), spelling.value >= 0) << member << " " << spelling.text;
            if (spelling.value >= 0) {
                EXPECT_EQ(m_manager.m_ini_flash_info.*field, spelling.value) << member << " " << spelling.text;
            }
        }
    }
}

TEST_F(UserFlashValues, TheOtherBytesMayNot) {
    const std::vector<SPELLING> spellings{
        {"0", 0},  {"255", 255}, {"256", -1},        {"-1", -1},         {"-256", -1},      {"", 0},           {"X", 0},
        {"7X", 7}, {" +9", 9},   {"2147483648", -1}, {"4294967295", -1}, {"4294967296", 0}, {"4294967297", 1},
    };
    for (const auto& [member, field] : UNSIGNED_BYTES) {
        for (const SPELLING& spelling : spellings) {
            EXPECT_EQ(assign({{member, spelling.text}}), spelling.value >= 0) << member << " " << spelling.text;
            if (spelling.value >= 0) {
                EXPECT_EQ(m_manager.m_ini_flash_info.*field, spelling.value) << member << " " << spelling.text;
            }
        }
    }
}

TEST_F(UserFlashValues, AnyNumberAndAnyTextIsAccepted) {
    for (const auto& [member, field] : DWORDS) {
        const std::vector<std::pair<std::string, DWORD>> spellings{
            {"0", 0},
            {"4294967295", 0xFFFFFFFF},
            {"-1", 0xFFFFFFFF},
            {"-2147483648", 0x80000000},
            {"", 0},
            {"4294967296", 0},
            {"12AB", 12},
            {" 8", 8},
            {"99999999999999999999", 0xFFFFFFFF},
        };
        for (const auto& [text, value] : spellings) {
            EXPECT_TRUE(assign({{member, text}})) << member << " " << text;
            EXPECT_EQ(m_manager.m_ini_flash_info.*field, value) << member << " " << text;
        }
    }
    for (const auto& [member, field] : STRINGS) {
        for (const std::string text : {"", " ", "X", "\xFF\x01"}) {
            EXPECT_TRUE(assign({{member, text}}));
            EXPECT_EQ(m_manager.m_ini_flash_info.*field, text);
        }
    }
}

TEST_F(UserFlashValues, StopAtTheFirstThatIsRefused) {
    EXPECT_FALSE(assign({{"die_count", "256"}}));
    const ROW& r = m_manager.m_ini_flash_info;
    EXPECT_EQ(r.device_name, "AC25X80");
    EXPECT_EQ(r.memory_type, 113);
    EXPECT_EQ(r.ini, "NONE");
    EXPECT_EQ(r.die_count, 0);
    EXPECT_EQ(r.device_bit_size, 0U);
    EXPECT_EQ(r.asc_voltage, "");
}

TEST_F(UserFlashValues, StandBetweenMarks) {
    const std::string text = "before@One@@tWo-\xE4@after";
    std::string value = "old";
    QWORD position = 0;
    EXPECT_TRUE(m_manager.get_string_from_ini(text, &value, position));
    EXPECT_EQ(value, "ONE");
    EXPECT_EQ(position, 10U) << "the mark that opens the next value";
    EXPECT_TRUE(m_manager.get_string_from_ini(text, &value, position));
    EXPECT_EQ(value, "");
    EXPECT_EQ(position, 11U);
    EXPECT_TRUE(m_manager.get_string_from_ini(text, &value, position));
    EXPECT_EQ(value, "TWO-\xE4");
    EXPECT_EQ(position, 17U);
    EXPECT_FALSE(m_manager.get_string_from_ini(text, &value, position));
    EXPECT_EQ(value, "");
    EXPECT_EQ(position, 17U) << "unchanged";
}

TEST_F(UserFlashValues, AreNotFoundOutsideTheText) {
    for (const std::string text : {"", "@", "none"}) {
        for (const QWORD start : {QWORD{0}, QWORD{4}, QWORD{5}, ~QWORD{0}}) {
            QWORD position = start;
            std::string value = "old";
            EXPECT_FALSE(m_manager.get_string_from_ini(text, &value, position));
            EXPECT_EQ(value, "");
            EXPECT_EQ(position, start);
        }
    }
}

TEST_F(UserFlashValues, AreListedOnTheDebugChannel) {
    std::string lines;
    const MSG_DEBUG_SINK previous =
        msg_set_debug_sink([&](const std::string& logger, int level, const std::string& text) {
            lines += logger + " " + std::to_string(level) + " " + text + "\n";
        });
    ROW& r = m_manager.m_ini_flash_info = ref::record();
    r.memory_type_index = 255;
    r.sdm_support = true;
    r.device_bit_size = 0x80000000;
    const CONSOLE console;
    m_manager.print_ini_database();
    msg_set_debug_sink(previous);
    EXPECT_EQ(console.output(), "");
    EXPECT_EQ(lines,
              "PGMDEV 2 3rd party SPI support - manufacturer_name : ACME\n"
              "PGMDEV 2 3rd party SPI support - device_name : AC25X80\n"
              "PGMDEV 2 3rd party SPI support - silicon_id : 0\n"
              "PGMDEV 2 3rd party SPI support - memory_id : 14\n"
              "PGMDEV 2 3rd party SPI support - memory_id_index : 2\n"
              "PGMDEV 2 3rd party SPI support - memory_type : 71\n"
              "PGMDEV 2 3rd party SPI support - memory_type_index : FF\n"
              "PGMDEV 2 3rd party SPI support - mfc_id : 20\n"
              "PGMDEV 2 3rd party SPI support - mfc_id_index : 0\n"
              "PGMDEV 2 3rd party SPI support - orvane_id : 12\n"
              "PGMDEV 2 3rd party SPI support - default_dev : 1\n"
              "PGMDEV 2 3rd party SPI support - ini : NONE\n"
              "PGMDEV 2 3rd party SPI support - extended_mode : 0\n"
              "PGMDEV 2 3rd party SPI support - micron_flow : 0\n"
              "PGMDEV 2 3rd party SPI support - spansion_flow : 0\n"
              "PGMDEV 2 3rd party SPI support - startup_protected : 0\n"
              "PGMDEV 2 3rd party SPI support - aai_mode : 0\n"
              "PGMDEV 2 3rd party SPI support - flag_status : 0\n"
              "PGMDEV 2 3rd party SPI support - die_count : 1\n"
              "PGMDEV 2 3rd party SPI support - device_bit_size : 80000000\n"
              "PGMDEV 2 3rd party SPI support - device_sector_byte : 10000\n"
              "PGMDEV 2 3rd party SPI support - half_size : 0\n"
              "PGMDEV 2 3rd party SPI support - byte4_addressing : 0\n"
              "PGMDEV 2 3rd party SPI support - bulk_erase_time : 50\n"
              "PGMDEV 2 3rd party SPI support - sec_erase_time : 3\n"
              "PGMDEV 2 3rd party SPI support - program_utime : 1388\n"
              "PGMDEV 2 3rd party SPI support - protection_mask : 1C\n"
              "PGMDEV 2 3rd party SPI support - protection_value : 1C\n"
              "PGMDEV 2 3rd party SPI support - unprotect_value : 0\n"
              "PGMDEV 2 3rd party SPI support - protection_division : 7\n"
              "PGMDEV 2 3rd party SPI support - bottom_value : 5\n"
              "PGMDEV 2 3rd party SPI support - sdm_support : 1\n"
              "PGMDEV 2 3rd party SPI support - asc_voltage : 3.3V\n");
}

}  // namespace

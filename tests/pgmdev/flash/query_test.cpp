#include <gtest/gtest.h>

#include <limits>

#include "pgmdev/flash/fixture.h"
#include "pgmdev/flash/probe.h"
#include "support/reports.h"

// Mapping devices to records, and asking for what they are mapped to.

namespace {

namespace ref = flash_reference;
using RECORD = PGMDEV_SFL_FLASH_INFO;

constexpr const char* PRECONDITION =
    "m_device_to_flash_map != NULL && device < m_device_count && m_flash_database != NULL && m_flash_count > 0";

RECORD row(const char* name, bool silicon, BYTE id, BYTE id_index, BYTE type, BYTE type_index, BYTE mfc,
           BYTE mfc_index) {
    RECORD record;
    record.device_name = name;
    record.silicon_id = silicon;
    record.memory_id = id;
    record.memory_id_index = id_index;
    record.memory_type = type;
    record.memory_type_index = type_index;
    record.mfc_id = mfc;
    record.mfc_id_index = mfc_index;
    return record;
}

/// A manager with records of the test's own and three device positions.
class FlashQuery : public testing::Test {
protected:
    FlashQuery() {
        const RECORD records[] = {
            row("RDID", false, 0x18, 2, 0xBA, 1, 0x20, 0),       row("RES", true, 0x13, 0, 0, 0, 0, 0),
            row("ANY_TYPE", false, 0x19, 2, 0x77, 255, 0x20, 0), row("SHADOWED", false, 0x18, 2, 0xBA, 1, 0x20, 0),
            row("FAR", false, 0x44, 254, 0xBA, 1, 0xEE, 255),
        };
        m_manager.m_flash_count = 5;
        m_manager.m_flash_database = new RECORD[5];
        std::copy(std::begin(records), std::end(records), m_manager.m_flash_database);
        m_manager.m_device_count = 3;
        m_manager.m_device_to_flash_map = new DWORD[3]{INVALID_DWORD, INVALID_DWORD, INVALID_DWORD};
        msg_set_debug_sink([this](const std::string& logger, int level, const std::string& text) {
            m_debug.push_back(logger + "/" + std::to_string(level) + "/" + text);
        });
    }
    ~FlashQuery() override { msg_set_debug_sink(nullptr); }

    bool map(DWORD device, std::vector<BYTE> response, bool silicon = false) {
        response.resize(256);
        return m_manager.flash_id_database_mapping(silicon, device, response.data());
    }
    DWORD mapped(DWORD device) { return m_manager.get_flash_mapping_index(device, true); }

    FLASH_PROBE m_manager;
    std::vector<std::string> m_debug;
};

TEST_F(FlashQuery, TheFirstMatchingRecordWins) {
    EXPECT_TRUE(map(1, {0x20, 0xBA, 0x18}));
    EXPECT_EQ(mapped(1), 0U);
    EXPECT_EQ(mapped(0), INVALID_DWORD);
    EXPECT_EQ(m_debug, (std::vector<std::string>{"PGMDEV/2/Found Device 2 device id at index 0"}));
}

TEST_F(FlashQuery, TheModeMustMatchTheRecord) {
    EXPECT_FALSE(map(0, {0x13}));
    EXPECT_TRUE(map(0, {0x13}, true));
    EXPECT_EQ(mapped(0), 1U);
    EXPECT_FALSE(map(0, {0x20, 0xBA, 0x18}, true));
    EXPECT_EQ(mapped(0), INVALID_DWORD);
    EXPECT_EQ(m_debug, (std::vector<std::string>{"PGMDEV/2/Found Device 1 silicon id at index 1"}));
}

TEST_F(FlashQuery, EachOfTheThreeBytesIsCompared) {
    EXPECT_FALSE(map(0, {0x21, 0xBA, 0x18}));
    EXPECT_FALSE(map(0, {0x20, 0xBB, 0x18}));
    EXPECT_FALSE(map(0, {0x20, 0xBA, 0x17}));
}

TEST_F(FlashQuery, OnlyTheMemoryTypeHasAWildcard) {
    EXPECT_TRUE(map(0, {0x20, 0x01, 0x19}));
    EXPECT_EQ(mapped(0), 2U);
    EXPECT_FALSE(map(0, {0x21, 0x01, 0x19}));
    std::vector<BYTE> far(256);
    far[1] = 0xBA;
    far[254] = 0x44;
    EXPECT_FALSE(map(0, far));  // a manufacturer index of 255 compares byte 255
    far[255] = 0xEE;
    EXPECT_TRUE(map(0, far));
    EXPECT_EQ(mapped(0), 4U);
}

TEST_F(FlashQuery, ADeviceThatNoLongerMatchesIsUnmapped) {
    EXPECT_TRUE(map(2, {0x20, 0xBA, 0x18}));
    EXPECT_FALSE(map(2, {0xFF, 0xFF, 0xFF}));
    EXPECT_EQ(m_manager.get_flash_mapping_index(2, true), 0xFFFFFFFF);
    EXPECT_REPORT(m_manager.get_flash_mapping_index(2, false), "index != INVALID_DWORD");
    EXPECT_REPORT(m_manager.sfl_get_device_name(2), "index != INVALID_DWORD");
}

TEST_F(FlashQuery, MappingChecksItsGround) {
    BYTE id[256] = {};
    EXPECT_REPORT(m_manager.flash_id_database_mapping(false, 3, id), "device_index < m_device_count");
    m_manager.m_flash_count = 0;
    EXPECT_REPORT(m_manager.flash_id_database_mapping(false, 0, id), "m_flash_database != NULL && m_flash_count > 0");
    FLASH_PROBE empty;
    EXPECT_REPORT(empty.flash_id_database_mapping(false, 0, id), "m_device_to_flash_map != NULL");
    empty.m_device_to_flash_map = new DWORD[1]{};
    empty.m_device_count = 1;
    EXPECT_REPORT(empty.flash_id_database_mapping(false, 0, id), "m_flash_database != NULL && m_flash_count > 0");
}

TEST_F(FlashQuery, AnIndexThatIsNoLongerCountedIsReported) {
    msg_set_debug_sink([this](const std::string&, int, const std::string&) { m_manager.m_flash_count = 2; });
    BYTE id[256] = {0x20, 0x01, 0x19};  // record 2
    EXPECT_REPORT(m_manager.flash_id_database_mapping(false, 0, id),
                  "m_device_to_flash_map[device_index] >= 0 && m_device_to_flash_map[device_index] < m_flash_count");
}

TEST_F(FlashQuery, AMappingCanBeChosen) {
    m_manager.set_flash_mapping_index(0, 4);
    EXPECT_EQ(m_manager.sfl_get_device_name(0), "FAR");
    constexpr const char* CHOICE =
        "m_device_to_flash_map != NULL && device < m_device_count && m_flash_database != NULL && m_flash_count > 0 && "
        "index < m_flash_count";
    EXPECT_REPORT(m_manager.set_flash_mapping_index(0, 5), CHOICE);
    EXPECT_REPORT(m_manager.set_flash_mapping_index(0, INVALID_DWORD), CHOICE);
    EXPECT_REPORT(m_manager.set_flash_mapping_index(3, 0), CHOICE);
    EXPECT_REPORT(FLASH_PROBE().set_flash_mapping_index(0, 0), CHOICE);
    EXPECT_EQ(mapped(0), 4U);
}

TEST_F(FlashQuery, AskingChecksItsGround) {
    EXPECT_REPORT(m_manager.get_flash_mapping_index(3, true), PRECONDITION);
    EXPECT_REPORT(m_manager.sfl_get_die_count(3), PRECONDITION);
    EXPECT_REPORT(FLASH_PROBE().sfl_get_die_count(0), PRECONDITION);
    EXPECT_REPORT(FLASH_PROBE().get_flash_mapping_index(0, true), PRECONDITION);
    m_manager.m_flash_count = 0;
    EXPECT_REPORT(m_manager.get_flash_mapping_index(0, true), PRECONDITION);
}

TEST_F(FlashQuery, EachAccessorReturnsItsMember) {
    RECORD r = ref::sample();
    r.memory_id = 1;
    r.memory_id_index = 2;
    r.memory_type = 3;
    r.memory_type_index = 4;
    r.mfc_id = 5;
    r.mfc_id_index = 6;
    m_manager.m_flash_database[3] = r;
    m_manager.set_flash_mapping_index(1, 3);
    PGMDEV_FLASH_MANAGER& m = m_manager;
    EXPECT_EQ(m.sfl_get_manufacturer_name(1), "Maker");
    EXPECT_EQ(m.sfl_get_device_name(1), "SAMPLE");
    EXPECT_EQ(m.sfl_get_memory_id(1), 1);
    EXPECT_EQ(m.sfl_get_memory_id_index(1), 2);
    EXPECT_EQ(m.sfl_get_memory_type(1), 3);
    EXPECT_EQ(m.sfl_get_memory_type_index(1), 4);
    EXPECT_EQ(m.sfl_get_mfc_id(1), 5);
    EXPECT_EQ(m.sfl_get_mfc_id_index(1), 6);
    EXPECT_EQ(m.sfl_get_orvane_id(1), 24);
    EXPECT_EQ(m.sfl_get_ini(1), "NONE");
    EXPECT_EQ(m.sfl_get_die_count(1), 3);
    EXPECT_EQ(m.sfl_get_device_bit_size(1), 0x08000000U);
    EXPECT_EQ(m.sfl_get_device_sector_byte(1), 0x10000U);
    EXPECT_EQ(m.sfl_get_bulk_erase_time(1), 250U);
    EXPECT_EQ(m.sfl_get_sec_erase_time(1), 6U);
    EXPECT_EQ(m.sfl_get_program_utime(1), 5000U);
    EXPECT_EQ(m.sfl_get_protection_mask(1), 0x5C);
    EXPECT_EQ(m.sfl_get_protection_value(1), 0x4C);
    EXPECT_EQ(m.sfl_get_unprotect_value(1), 0x40);
    EXPECT_EQ(m.sfl_get_protection_division(1), 15);
    EXPECT_EQ(m.sfl_get_bottom_value(1), 0x20);
    EXPECT_EQ(m.sfl_get_asc_voltage(1), "3.3V");

    // Each flag alone: only its own accessor says so.
    using FLAG = bool RECORD::*;
    using ACCESSOR = bool (PGMDEV_FLASH_MANAGER::*)(DWORD);
    using M = PGMDEV_FLASH_MANAGER;
    const std::vector<std::pair<FLAG, ACCESSOR>> flags{
        {&RECORD::silicon_id, &M::sfl_get_silicon_id},
        {&RECORD::default_dev, &M::sfl_get_default_dev},
        {&RECORD::extended_mode, &M::sfl_get_extended_mode},
        {&RECORD::micron_flow, &M::sfl_get_micron_flow},
        {&RECORD::spansion_flow, &M::sfl_get_spansion_flow},
        {&RECORD::startup_protected, &M::sfl_get_startup_protected},
        {&RECORD::aai_mode, &M::sfl_get_aai_mode},
        {&RECORD::flag_status, &M::sfl_get_flag_status},
        {&RECORD::half_size, &M::sfl_get_half_size},
        {&RECORD::byte4_addressing, &M::sfl_get_byte4_addressing},
        {&RECORD::sdm_support, &M::sfl_get_sdm_support},
    };
    for (const auto& [set, unused] : flags) {
        RECORD alone;
        alone.*set = true;
        m_manager.m_flash_database[3] = alone;
        for (const auto& [flag, accessor] : flags) {
            EXPECT_EQ((m.*accessor)(1), flag == set);
        }
    }
}

TEST_F(FlashQuery, TheLongestProgramTimeOverMappedDevices) {
    for (DWORD i = 0; i < 5; ++i) {
        m_manager.m_flash_database[i].program_utime = 1000 * (i + 1);
    }
    EXPECT_REPORT(m_manager.sfl_get_chain_longest_program_utime(), "found");
    m_manager.set_flash_mapping_index(2, 3);
    EXPECT_EQ(m_manager.sfl_get_chain_longest_program_utime(), 4000U);
    m_manager.set_flash_mapping_index(0, 0);
    EXPECT_EQ(m_manager.sfl_get_chain_longest_program_utime(), 4000U);
    m_manager.set_flash_mapping_index(1, 4);
    EXPECT_EQ(m_manager.sfl_get_chain_longest_program_utime(), 5000U);
    m_manager.m_flash_count = 0;
    EXPECT_REPORT(m_manager.sfl_get_chain_longest_program_utime(), PRECONDITION);
    EXPECT_REPORT(FLASH_PROBE().sfl_get_chain_longest_program_utime(), "m_device_count > 0");
    EXPECT_REPORT(FLASH_PROBE(false, 2, true, false).sfl_get_chain_longest_program_utime(), PRECONDITION);
}

TEST_F(FlashQuery, AProgramTimeOfZeroCountsAsFound) {
    m_manager.set_flash_mapping_index(0, 0);
    EXPECT_EQ(m_manager.sfl_get_chain_longest_program_utime(), 0U);
}

TEST_F(FlashQuery, TheDefaultFlashOfAName) {
    EXPECT_EQ(m_manager.get_default_flash("RDID"), nullptr);  // no row of that name is the default
    m_manager.m_flash_database[2].device_name = "rdid";
    m_manager.m_flash_database[2].default_dev = true;
    m_manager.m_flash_database[4].device_name = "RDID";
    m_manager.m_flash_database[4].default_dev = true;
    EXPECT_EQ(m_manager.get_default_flash("Rdid"), &m_manager.m_flash_database[2]);
    EXPECT_EQ(m_manager.get_default_flash("RDI"), nullptr);
    EXPECT_EQ(m_manager.get_default_flash(""), nullptr);
    EXPECT_EQ(FLASH_PROBE().get_default_flash("RDID"), nullptr);
}

TEST_F(FlashQuery, Conversions) {
    EXPECT_FALSE(m_manager.is_power_of_two(0));
    for (int bit = 0; bit < 32; ++bit) {
        EXPECT_TRUE(m_manager.is_power_of_two(DWORD{1} << bit));
        EXPECT_FALSE(m_manager.is_power_of_two((DWORD{1} << bit) | (bit == 0 ? 2U : 1U)));
    }
    EXPECT_EQ(m_manager.to_string(255, true), "-1");
    EXPECT_EQ(m_manager.to_string(255, false), "255");
    EXPECT_EQ(m_manager.to_string(0xFFFFFFFF, false), "-1");
    EXPECT_EQ(m_manager.to_string(0xFFFFFFFF, true), "-1");
    EXPECT_EQ(m_manager.to_string(0x80000000, false), "-2147483648");
    EXPECT_EQ(m_manager.to_string(0, true), "0");

    bool in_range = false;
    EXPECT_EQ(m_manager.get_number_from_string("255", 255, in_range), 255U);
    EXPECT_TRUE(in_range);
    EXPECT_EQ(m_manager.get_number_from_string("256", 255, in_range), 256U);
    EXPECT_FALSE(in_range);
    EXPECT_EQ(m_manager.get_number_from_string(" \t+12abc", 255, in_range), 12U);
    EXPECT_TRUE(in_range);
    EXPECT_EQ(m_manager.get_number_from_string("-1", 255, in_range), 0xFFFFFFFF);
    EXPECT_FALSE(in_range);
    EXPECT_EQ(m_manager.get_number_from_string("none", 0, in_range), 0U);
    EXPECT_TRUE(in_range);
    EXPECT_EQ(m_manager.get_number_from_string("", 0, in_range), 0U);
    EXPECT_TRUE(in_range);
    EXPECT_EQ(m_manager.get_number_from_string("4294967295", 0xFFFFFFFF, in_range), 0xFFFFFFFF);
    EXPECT_EQ(m_manager.get_number_from_string("4294967297", 0xFFFFFFFF, in_range), 1U);  // the low 32 bits

    bool valid = false;
    EXPECT_TRUE(m_manager.get_boolean_from_string("1", valid) && valid);
    EXPECT_FALSE(m_manager.get_boolean_from_string("0", valid));
    EXPECT_TRUE(valid);
    for (const char* text : {"true", "", "01", "1 ", "2", "TRUE"}) {
        EXPECT_FALSE(m_manager.get_boolean_from_string(text, valid)) << text;
        EXPECT_FALSE(valid) << text;
    }

    bool ok = false;
    EXPECT_EQ(m_manager.get_dword_from_string("0x10", &ok), 16U);
    EXPECT_TRUE(ok);
    EXPECT_EQ(m_manager.get_dword_from_string("", &ok), 0U);
    EXPECT_FALSE(ok);
    EXPECT_EQ(m_manager.get_dword_from_string("ten", &ok), 0U);
    EXPECT_FALSE(ok);
    EXPECT_REPORT(m_manager.get_dword_from_string("ten", nullptr), "Invalid string to integer conversion");
}

TEST_F(FlashQuery, AnIndexIsComparedWithTheSlotsThatExist) {
    m_manager.set_flash_mapping_index(0, 4);
    m_manager.m_flash_count = 2;  // the records behind them are still there
    EXPECT_EQ(m_manager.sfl_get_device_name(0), m_manager.m_flash_database[4].device_name);
    EXPECT_EQ(m_manager.sfl_get_chain_longest_program_utime(), m_manager.m_flash_database[4].program_utime);
}

}  // namespace

#include <gtest/gtest.h>

#include <fstream>
#include <map>
#include <set>
#include <sstream>

#include "pgmdev/flash/fixture.h"
#include "pgmdev/flash/probe.h"
#include "pgmdev_flash_table.h"
#include "support/scratch.h"
#include "support/settings.h"

// The real table: compiled, loaded, and compared cell by cell with its source by a reader of this test's own.

namespace {

namespace ref = flash_reference;

const std::string SOURCE = std::string(TEST_DATA_DIR) + "/flash/pgm_flash.csv";
const std::string DATABASE = std::string(TEST_DEVICES_DIR) + "/programmer/pgm_flash.pcf";

using ROW = std::map<std::string, std::string>;  // cells by member name

/// The data rows of the source.
std::vector<ROW> read_source() {
    std::ifstream file(SOURCE);
    std::vector<std::vector<std::string>> lines;
    for (std::string line; std::getline(file, line);) {
        for (char& c : line) {
            c = c == ',' ? ' ' : c;
        }
        std::istringstream cells(line);
        std::vector<std::string> row;
        for (std::string cell; cells >> cell;) {
            row.push_back(cell);
        }
        if (!row.empty()) {
            lines.push_back(row);
        }
    }
    std::vector<ROW> rows;
    for (std::size_t i = 8; i < lines.size(); ++i) {
        ROW row;
        for (std::size_t cell = 0; cell < lines[i].size(); ++cell) {
            row[lines[1].at(cell)] = lines[i][cell];
        }
        rows.push_back(row);
    }
    return rows;
}

/// The value of a cell in the form in which the payload holds it.
std::string packed(const std::string& type, const std::string& cell) {
    if (type == "text") {
        return ref::tagged_text(cell);
    }
    if (type == "bool") {
        return ref::tagged_bool(cell == "TRUE");
    }
    const unsigned long number = std::stoul(cell, nullptr, cell.starts_with("0x") ? 16 : 10);
    return type == "byte" ? ref::tagged_byte(static_cast<unsigned>(number)) : ref::tagged_dword(number);
}

const std::vector<std::pair<const char*, const char*>> MEMBERS{
    {"manufacturer_name", "text"}, {"device_name", "text"},      {"silicon_id", "bool"},
    {"memory_id", "byte"},         {"memory_id_index", "byte"},  {"memory_type", "byte"},
    {"memory_type_index", "byte"}, {"mfc_id", "byte"},           {"mfc_id_index", "byte"},
    {"orvane_id", "byte"},         {"default_dev", "bool"},      {"ini", "text"},
    {"extended_mode", "bool"},     {"micron_flow", "bool"},      {"spansion_flow", "bool"},
    {"startup_protected", "bool"}, {"aai_mode", "bool"},         {"flag_status", "bool"},
    {"die_count", "byte"},         {"device_bit_size", "dword"}, {"device_sector_byte", "dword"},
    {"half_size", "bool"},         {"byte4_addressing", "bool"}, {"bulk_erase_time", "dword"},
    {"sec_erase_time", "dword"},   {"program_utime", "dword"},   {"protection_mask", "byte"},
    {"protection_value", "byte"},  {"unprotect_value", "byte"},  {"protection_division", "byte"},
    {"bottom_value", "byte"},      {"sdm_support", "bool"},      {"asc_voltage", "text"}};

TEST(ShippedFlashTable, ItsPayloadIsTheSourceCellByCell) {
    const std::vector<ROW> rows = read_source();
    ASSERT_GE(rows.size(), 293U);
    std::string payload = ref::le32(1) + ref::le32(rows.size()) + ref::le32(ref::MEMBERS);
    for (const ROW& row : rows) {
        ASSERT_EQ(row.size(), ref::MEMBERS);
        for (const auto& [member, type] : MEMBERS) {
            payload += packed(type, row.at(member));
        }
        payload += "END1";
    }
    payload += "END2";
    const std::string file = read_file(DATABASE);
    EXPECT_EQ(file.substr(0, 44), ref::head() + ref::le32(payload.size()));
    EXPECT_EQ(ref::inflated(file.substr(44, file.size() - 46), payload.size()), payload);
}

TEST(ShippedFlashTable, HasNoFault) {
    const PGMDEV_FLASH_TABLE table = PGMDEV_FLASH_TABLE::from_source(SOURCE);
    for (const PGMDEV_TABLE_FAULT& fault : table.faults()) {
        EXPECT_EQ(fault.severity, PGMDEV_TABLE_FAULT::SEVERITY::WARNING) << PGMDEV_FLASH_TABLE::describe(fault, SOURCE);
        EXPECT_EQ(fault.member, "memory_id") << "only rows that lose to an earlier one are remarkable";
    }
}

TEST(ShippedFlashTable, ThreeToFiveRowsAreBehindASwitch) {
    int switched = 0;
    for (const ROW& row : read_source()) {
        switched += row.at("ini") != "NONE" ? 1 : 0;
    }
    EXPECT_GE(switched, 3);
    EXPECT_LE(switched, 5);
}

/// Every switch of the table, on for one test.
std::vector<std::unique_ptr<SETTING>> all_switches() {
    std::vector<std::unique_ptr<SETTING>> settings;
    for (const ROW& row : read_source()) {
        if (row.at("ini") != "NONE") {
            settings.push_back(std::make_unique<SETTING>("PGM_ALLOW_" + row.at("ini"), "on"));
        }
    }
    return settings;
}

TEST(ShippedFlashTable, LoadsWithAllSwitchesOffAndOn) {
    const std::vector<ROW> rows = read_source();
    const DEVICE_DB_DIRECTORY directory(TEST_DEVICES_DIR);
    FLASH_PROBE off(false, 1, false, false);
    EXPECT_LT(off.get_flash_count(), rows.size());
    const auto switches = all_switches();
    FLASH_PROBE on(false, 1, false, false);
    ASSERT_EQ(on.get_flash_count(), rows.size());
    for (DWORD i = 0; i < on.get_flash_count(); ++i) {
        EXPECT_EQ(on.get_flash_database()[i].device_name, rows[i].at("device_name"));
    }
}

/// The response of a chip of this row: its own bytes, zeros elsewhere.
std::vector<BYTE> response_of(const PGMDEV_SFL_FLASH_INFO& row) {
    std::vector<BYTE> response(256);
    response[row.memory_id_index] = row.memory_id;
    if (!row.silicon_id) {
        response[row.mfc_id_index] = row.mfc_id;
        if (row.memory_type_index != 255) {
            response[row.memory_type_index] = row.memory_type;
        }
    }
    return response;
}

TEST(ShippedFlashTable, EveryRowIsIdentifiedFromItsOwnBytes) {
    const auto switches = all_switches();
    const DEVICE_DB_DIRECTORY directory(TEST_DEVICES_DIR);
    FLASH_PROBE manager(false, 1, false, false);

    std::set<std::string> beaten;  // rows that the table's own check says no response reaches
    const PGMDEV_FLASH_TABLE table = PGMDEV_FLASH_TABLE::from_source(SOURCE);
    for (const PGMDEV_TABLE_FAULT& fault : table.faults()) {
        beaten.insert(fault.row);
    }
    for (DWORD i = 0; i < manager.get_flash_count(); ++i) {
        const PGMDEV_SFL_FLASH_INFO& row = manager.get_flash_database()[i];
        std::vector<BYTE> response = response_of(row);
        ASSERT_TRUE(manager.flash_id_database_mapping(row.silicon_id, 0, response.data())) << row.device_name;
        const DWORD index = manager.get_flash_mapping_index(0, false);
        if (index != i) {
            // An earlier row wins that compares the same bytes, or some of them: one that always does, or one behind a
            // switch, which is on here.
            EXPECT_LT(index, i) << row.device_name;
            EXPECT_TRUE(beaten.contains(row.device_name) || manager.get_flash_database()[index].ini != "NONE")
                << row.device_name << " lost to " << manager.get_flash_database()[index].device_name;
        }
    }
}

TEST(ShippedFlashTable, RealResponsesFindTheirChips) {
    const DEVICE_DB_DIRECTORY directory(TEST_DEVICES_DIR);
    FLASH_PROBE manager(false, 1, false, false);
    const std::vector<std::pair<std::vector<BYTE>, const char*>> responses{
        {{0x20, 0xBA, 0x18}, "N25Q128A13"},
        {{0x20, 0xBA, 0x18, 0x10, 0x44, 0x00}, "MT25QL128"},
        {{0x20, 0xBA, 0x19, 0x10, 0x44, 0x00}, "MT25QL256A"},
        {{0x20, 0xBA, 0x19, 0x10, 0x00, 0x00}, "N25Q256A"},
        {{0x20, 0xBB, 0x20, 0x10, 0x44, 0x00}, "MT25QU512A"},
        {{0xEF, 0x70, 0x17}, "W25Q64JVM"},
        {{0xEF, 0x40, 0x17}, "W25Q64JV"},
        {{0xC2, 0x20, 0x19}, "MX25L25635E"},
        {{0x01, 0x20, 0x18, 0x4D, 0x00, 0x80}, "S25FL128S0"},
        {{0x01, 0x20, 0x18, 0x4D, 0x01, 0x80}, "S25FL128S1"},
        {{0x01, 0x20, 0x18, 0x4D, 0x01, 0x81}, "S25FS128S"},
        {{0x01, 0x20, 0x18, 0x4D, 0x00}, "S25FL129P0"},
        {{0x01, 0x20, 0x18, 0x03, 0x01}, "S25FL128P1"},
        {{0x01, 0x02, 0x19, 0x4D, 0x01, 0x80}, "S25FL256S1"},
        {{0x7F, 0x9D, 0x46}, "PM25LQ032"},
        {{0xBF, 0x25, 0x41}, "SST25VF016B"},
        {{0xEF, 0x40, 0x18}, "W25Q128JV"},
        {{0xEF, 0x40, 0x18, 0xFF, 0x01, 0x80}, "W25Q128JV"},  // what follows is not its own
        {{0x20, 0xBA, 0x18, 0x10, 0x40, 0x00}, "MT25QL128"},
        {{0x20, 0xBB, 0x21, 0x10, 0x44, 0x00}, "MT25QU01G"},
        {{0x20, 0xBB, 0x21, 0x10, 0x00, 0x00}, "N25Q00A"},
        {{0x20, 0xBB, 0x21}, "N25Q00A"},
        {{0x01, 0x20, 0x18, 0x4D, 0x00, 0x81}, "S25FS128S0"},
        {{0x01, 0x02, 0x19, 0x4D, 0x00, 0x80}, "S25FL256S0"},
        {{0x01, 0x02, 0x19, 0x4D, 0x00}, "S25FL256S0"},
        {{0x01, 0x02, 0x19, 0x4D, 0x00, 0x81}, "S25FS256S0"},
        {{0x34, 0x2B, 0x1C, 0x0F, 0x00, 0x90}, "S25HS02GT"},
        {{0x7F, 0x37, 0x20, 0x15}, "A25L16PU"},
    };
    for (auto [response, name] : responses) {
        response.resize(256);
        ASSERT_TRUE(manager.flash_id_database_mapping(false, 0, response.data())) << name;
        EXPECT_EQ(manager.sfl_get_device_name(0), name);
    }
    std::vector<BYTE> signature(256);
    signature[0] = 0x13;
    ASSERT_TRUE(manager.flash_id_database_mapping(true, 0, signature.data()));
    EXPECT_EQ(manager.sfl_get_device_name(0), "M25P80");
}

TEST(ShippedFlashTable, AnIdleBusFindsNothing) {
    const DEVICE_DB_DIRECTORY directory(TEST_DEVICES_DIR);
    FLASH_PROBE manager(false, 1, false, false);
    for (const BYTE level : {BYTE{0x00}, BYTE{0xFF}}) {
        std::vector<BYTE> response(256, level);
        EXPECT_FALSE(manager.flash_id_database_mapping(false, 0, response.data()));
        EXPECT_FALSE(manager.flash_id_database_mapping(true, 0, response.data()));
    }
}

}  // namespace

#include <algorithm>
#include <cstdlib>
#include <span>

#include "gen.h"
#include "msg.h"
#include "pgm_common.h"
#include "pgmdev_flash_manager.h"
#include "report.h"

// Mapping devices to records, queries, and conversions.

namespace {

constexpr int MAPPING_DEBUG_LEVEL = 2;

bool matches(const PGMDEV_SFL_FLASH_INFO& record, bool silicon_id, const BYTE* id_bytes) {
    if (record.silicon_id != silicon_id || id_bytes[record.memory_id_index] != record.memory_id) {
        return false;
    }
    return silicon_id || ((record.memory_type_index == PGMDEV_SFL_FLASH_INFO::NONE ||
                           id_bytes[record.memory_type_index] == record.memory_type) &&
                          id_bytes[record.mfc_id_index] == record.mfc_id);
}

}  // namespace

bool PGMDEV_FLASH_MANAGER::flash_id_database_mapping(bool silicon_id, DWORD device_index, BYTE* id_bytes) {
    PGMDEV_REQUIRE(m_device_to_flash_map != nullptr, "m_device_to_flash_map != NULL", FLASH_MANAGER_FILE);
    PGMDEV_REQUIRE(device_index < m_device_count, "device_index < m_device_count", FLASH_MANAGER_FILE);
    PGMDEV_REQUIRE(m_flash_database != nullptr && m_flash_count > 0, "m_flash_database != NULL && m_flash_count > 0",
                   FLASH_MANAGER_FILE);
    DWORD& entry = m_device_to_flash_map[device_index];
    entry = INVALID_DWORD;
    const std::span<const PGMDEV_SFL_FLASH_INFO> records(m_flash_database, m_flash_count);
    const auto found = std::find_if(records.begin(), records.end(), [&](const PGMDEV_SFL_FLASH_INFO& record) {
        return matches(record, silicon_id, id_bytes);
    });
    if (found == records.end()) {
        return false;
    }
    entry = static_cast<DWORD>(found - records.begin());
    msg_local_vdebug(PGMDEV_MODULE, MAPPING_DEBUG_LEVEL,
                     silicon_id ? "Found Device %d silicon id at index %d" : "Found Device %d device id at index %d",
                     static_cast<int>(device_index + 1), static_cast<int>(entry));
    PGMDEV_REQUIRE(entry < m_flash_count,
                   "m_device_to_flash_map[device_index] >= 0 && m_device_to_flash_map[device_index] < m_flash_count",
                   FLASH_MANAGER_FILE);
    return true;
}

void PGMDEV_FLASH_MANAGER::require_mapping(DWORD device) const {
    PGMDEV_REQUIRE(
        m_device_to_flash_map != nullptr && device < m_device_count && m_flash_database != nullptr && m_flash_count > 0,
        "m_device_to_flash_map != NULL && device < m_device_count && m_flash_database != NULL && m_flash_count > 0",
        FLASH_MANAGER_FILE);
}

DWORD PGMDEV_FLASH_MANAGER::get_flash_mapping_index(DWORD device, bool allow_invalid) {
    require_mapping(device);
    const DWORD index = m_device_to_flash_map[device];
    PGMDEV_REQUIRE(allow_invalid || index != INVALID_DWORD, "index != INVALID_DWORD", FLASH_MANAGER_FILE);
    return index;
}

const PGMDEV_SFL_FLASH_INFO& PGMDEV_FLASH_MANAGER::mapped_record(DWORD device) {
    return record_at(get_flash_mapping_index(device, false));
}

const PGMDEV_SFL_FLASH_INFO& PGMDEV_FLASH_MANAGER::record_at(DWORD index) const {
    // The map may be older than the records. How many an array of a deriving class has, only that class knows.
    PGMDEV_REQUIRE(m_flash_database != m_counted_database || index < std::max(m_slots, m_flash_count),
                   "index < data_size", FLASH_MANAGER_FILE);
    return m_flash_database[index];
}

void PGMDEV_FLASH_MANAGER::set_flash_mapping_index(DWORD device, DWORD index) {
    PGMDEV_REQUIRE(m_device_to_flash_map != nullptr && device < m_device_count && m_flash_database != nullptr &&
                       m_flash_count > 0 && index < m_flash_count,
                   "m_device_to_flash_map != NULL && device < m_device_count && m_flash_database != NULL && "
                   "m_flash_count > 0 && index < m_flash_count",
                   FLASH_MANAGER_FILE);
    m_device_to_flash_map[device] = index;
}

const PGMDEV_SFL_FLASH_INFO* PGMDEV_FLASH_MANAGER::get_default_flash(std::string device_name) {
    if (m_flash_database == nullptr) {
        return nullptr;
    }
    const std::span<const PGMDEV_SFL_FLASH_INFO> records(m_flash_database, m_flash_count);
    const auto found = std::find_if(records.begin(), records.end(), [&](const PGMDEV_SFL_FLASH_INFO& record) {
        return record.default_dev && gen_stricmp(record.device_name, device_name) == 0;
    });
    return found != records.end() ? &*found : nullptr;
}

DWORD PGMDEV_FLASH_MANAGER::get_flash_count() {
    return m_flash_count;
}

const PGMDEV_SFL_FLASH_INFO* PGMDEV_FLASH_MANAGER::get_flash_database() {
    return m_flash_database;
}

DWORD PGMDEV_FLASH_MANAGER::sfl_get_chain_longest_program_utime() {
    PGMDEV_REQUIRE(m_device_count > 0, "m_device_count > 0", FLASH_MANAGER_FILE);
    bool found = false;
    DWORD longest = 0;
    for (DWORD device = 0; device < m_device_count; ++device) {
        const DWORD index = get_flash_mapping_index(device, true);
        if (index != INVALID_DWORD) {
            found = true;
            longest = std::max(longest, record_at(index).program_utime);
        }
    }
    PGMDEV_REQUIRE(found, "found", FLASH_MANAGER_FILE);
    return longest;
}

bool PGMDEV_FLASH_MANAGER::is_power_of_two(DWORD value) {
    return value != 0 && (value & (value - 1)) == 0;
}

std::string PGMDEV_FLASH_MANAGER::to_string(DWORD value, bool byte_value) {
    if (value == INVALID_DWORD || (byte_value && value == 255)) {
        return "-1";
    }
    return std::to_string(static_cast<std::int32_t>(value));
}

DWORD PGMDEV_FLASH_MANAGER::get_number_from_string(std::string text, DWORD max, bool& in_range) {
    const auto value = static_cast<DWORD>(std::strtoll(text.c_str(), nullptr, 10));
    in_range = value <= max;
    return value;
}

DWORD PGMDEV_FLASH_MANAGER::get_dword_from_string(std::string text, bool* ok) {
    return PGM_COMMON::convert_string_to_dword(text, true, ok, nullptr, true);
}

bool PGMDEV_FLASH_MANAGER::get_boolean_from_string(std::string text, bool& valid) {
    valid = text == "1" || text == "0";
    return text == "1";
}

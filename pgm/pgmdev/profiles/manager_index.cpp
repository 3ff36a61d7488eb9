#include "dev.h"
#include "gen.h"
#include "msg.h"
#include "pgm_common.h"
#include "pgmdev_dev_info_manager.h"
#include "profiles/records.h"
#include "report.h"
#include "stl.h"

// Searching the records, and the index tables that the compiler makes from the searches.

namespace {

constexpr const char* NO_ENTRY = "m_index != DWORD(-1) && m_index < TOTAL_DATABASE_DEVICE";

void notify_missing_family(DEV_FAMILY_ENUM family) {
    std::string name = dstr_get_user_string(family) + " (" + std::to_string(static_cast<int>(family)) + ")";
    stl_toupper(name);
    const std::string text = "Missing family " + name +
                             " from Dev Info CSV.\n\n"
                             "Forcing this family to use Generic database.\n\n"
                             "Please add the family support as soon as possible.\n";
    const std::vector<int> recipients{0, 3, 4};  // codes of the programmer's common library
    if (!PGM_COMMON::send_auto_email_file("PGMDEV Dev Info Manager notification", text, recipients)) {
        msg_local_vdebug(PGMDEV_MODULE, 1, "Not sent: %s", text.c_str());
    }
}

/// For each device the programmer file of its first entry in the part list; null: it has none there. The list is gone through
/// once for all devices.
std::vector<const std::string*> programmer_files_by_device(const std::vector<PGMDEV_PGM_PART*>& part_list) {
    std::vector<const std::string*> files(DEV_DEVICE_MAX);
    for (const PGMDEV_PGM_PART* entry : part_list) {
        if (entry == nullptr || entry->device == DEV_DEVICE_INVALID) {
            continue;
        }
        if (const auto device = static_cast<DWORD>(entry->device); device < files.size() && files[device] == nullptr) {
            files[device] = &entry->pcf;
        }
    }
    return files;
}

}  // namespace

bool PGMDEV_DEV_INFO_MANAGER::find_record(DWORD identifier, DWORD limit,
                                          DWORD (*identifier_of)(const PGMDEV_DEVICE_INFO&), const char* condition) {
    for (DWORD record = 0; record < TOTAL_DATABASE_DEVICE; ++record) {
        const DWORD id = identifier_of(m_device_database[record]);
        PGMDEV_REQUIRE(id < limit, condition, DEV_INFO_MANAGER_FILE);
        if (id == identifier) {
            m_index = record;
            return true;
        }
    }
    return false;
}

bool PGMDEV_DEV_INFO_MANAGER::search_family(DEV_FAMILY_ENUM family, bool allow_invalid) {
    m_index = INVALID_DWORD;
    const auto id = static_cast<DWORD>(family);
    PGMDEV_REQUIRE(
        m_device_database != nullptr && id < DWORD{DEV_FAMILY_MAX} && (allow_invalid || family != DEV_FAMILY_INVALID),
        "m_device_database != NULL && family < DEV_FAMILY_MAX && "
        "(allow_invalid || family != DEV_FAMILY_INVALID)",
        DEV_INFO_MANAGER_FILE);
    return find_record(
        id, DEV_FAMILY_MAX, [](const PGMDEV_DEVICE_INFO& info) { return static_cast<DWORD>(info.family); },
        "id < DEV_FAMILY_MAX");
}

bool PGMDEV_DEV_INFO_MANAGER::search_device(DEV_DEVICE_ENUM device, bool allow_invalid) {
    m_index = INVALID_DWORD;
    const auto id = static_cast<DWORD>(device);
    PGMDEV_REQUIRE(
        m_device_database != nullptr && id < DWORD{DEV_DEVICE_MAX} && (allow_invalid || device != DEV_DEVICE_INVALID),
        "m_device_database != NULL && device < DEV_DEVICE_MAX && "
        "(allow_invalid || device != DEV_DEVICE_INVALID)",
        DEV_INFO_MANAGER_FILE);
    return find_record(
        id, DEV_DEVICE_MAX, [](const PGMDEV_DEVICE_INFO& info) { return static_cast<DWORD>(info.device); },
        "id < DEV_DEVICE_MAX");
}

bool PGMDEV_DEV_INFO_MANAGER::search_part(int part, bool allow_invalid) {
    m_index = INVALID_DWORD;
    const auto id = static_cast<DWORD>(part);
    const auto limit = static_cast<DWORD>(DEV_PART_MAX);
    PGMDEV_REQUIRE(m_device_database != nullptr && id < limit && (allow_invalid || part != DEV_PART_INVALID),
                   "m_device_database != NULL && part < DEV_PART_MAX && "
                   "(allow_invalid || part != DEV_PART_INVALID)",
                   DEV_INFO_MANAGER_FILE);
    return find_record(
        id, limit, [](const PGMDEV_DEVICE_INFO& info) { return static_cast<DWORD>(info.part); }, "id < DEV_PART_MAX");
}

bool PGMDEV_DEV_INFO_MANAGER::find_pcf(const std::string& pcf) {
    for (DWORD record = 0; !pcf.empty() && record < TOTAL_DATABASE_DEVICE; ++record) {
        if (gen_stricmp(m_device_database[record].pcf, pcf) == 0) {
            m_index = record;
            return true;
        }
    }
    return false;
}

bool PGMDEV_DEV_INFO_MANAGER::search_pcf_for_device(DEV_DEVICE_ENUM device) {
    PGMDEV_REQUIRE(m_device_database != nullptr && static_cast<DWORD>(device) < DWORD{DEV_DEVICE_MAX},
                   "m_device_database != NULL && device < DEV_DEVICE_MAX", DEV_INFO_MANAGER_FILE);
    m_index = INVALID_DWORD;
    for (const PGMDEV_PGM_PART* entry : m_pgm_parts) {
        if (device != DEV_DEVICE_INVALID && entry != nullptr && entry->device == device) {
            return find_pcf(entry->pcf);
        }
    }
    return false;
}

bool PGMDEV_DEV_INFO_MANAGER::search_pcf_for_part(int part) {
    PGMDEV_REQUIRE(m_device_database != nullptr && static_cast<DWORD>(part) < static_cast<DWORD>(DEV_PART_MAX),
                   "m_device_database != NULL && part < DEV_PART_MAX", DEV_INFO_MANAGER_FILE);
    m_index = INVALID_DWORD;
    for (const PGMDEV_PGM_PART* entry : m_pgm_parts) {
        if (part != DEV_PART_INVALID && entry != nullptr && entry->part == part) {
            return find_pcf(entry->pcf);
        }
    }
    return false;
}

DWORD PGMDEV_DEV_INFO_MANAGER::generic_position(DEV_FAMILY_ENUM family) {
    PGMDEV_REQUIRE(family != DEV_FAMILY_GENERIC, "DEV_FAMILY_ENUM(i) != DEV_FAMILY_GENERIC", DEV_INFO_MANAGER_FILE);
    notify_missing_family(family);
    // Whether there is a generic record, taken as a number: that is what existing databases hold, not the position of
    // that record. Source tables therefore keep their generic family in record 1.
    return search_family(DEV_FAMILY_GENERIC, false) ? 1 : 0;
}

DWORD PGMDEV_DEV_INFO_MANAGER::family_entry(DEV_FAMILY_ENUM family) {
    if (!search_family(family, false)) {
        m_index = generic_position(family);
    }
    return m_index;
}

/// Of a device that has no record by its programmer file.
DWORD PGMDEV_DEV_INFO_MANAGER::device_entry(DEV_DEVICE_ENUM device) {
    if (!search_device(device, false)) {
        const DEV_FAMILY_ENUM family = DEV_PART_MANAGER().get_family_of(device);
        PGMDEV_REQUIRE(family != DEV_FAMILY_INVALID && static_cast<DWORD>(family) < DWORD{DEV_FAMILY_MAX},
                       "family != DEV_FAMILY_INVALID && family < DEV_FAMILY_MAX", DEV_INFO_MANAGER_FILE);
        m_index = m_family_table[family];
        PGMDEV_REQUIRE(m_index != INVALID_DWORD && m_index < TOTAL_DATABASE_DEVICE, NO_ENTRY, DEV_INFO_MANAGER_FILE);
    }
    return m_index;
}

DWORD PGMDEV_DEV_INFO_MANAGER::part_entry(int part) {
    if (!search_part(part, false)) {
        const DEV_DEVICE_ENUM device = DEV_PART_MANAGER().get_device_of(part);
        PGMDEV_REQUIRE(device != DEV_DEVICE_INVALID && static_cast<DWORD>(device) < DWORD{DEV_DEVICE_MAX},
                       "device != DEV_DEVICE_INVALID && device < DEV_DEVICE_MAX", DEV_INFO_MANAGER_FILE);
        m_index = m_device_table[device];
        PGMDEV_REQUIRE(m_index != INVALID_DWORD && m_index < TOTAL_DATABASE_DEVICE, NO_ENTRY, DEV_INFO_MANAGER_FILE);
    }
    return m_index;
}

void PGMDEV_DEV_INFO_MANAGER::compute_tables() {
    PGMDEV_REQUIRE(m_device_database != nullptr, "m_device_database != NULL", DEV_INFO_MANAGER_FILE);
    make_tables();
    // The invalid identifiers are governed by no record: those that hold them are keyed otherwise.
    for (int i = 0; i < DEV_FAMILY_MAX; ++i) {
        const auto family = static_cast<DEV_FAMILY_ENUM>(i);
        m_family_table[i] = family == DEV_FAMILY_INVALID ? INVALID_DWORD : family_entry(family);
    }
    const std::vector<const std::string*> programmer_files = programmer_files_by_device(m_pgm_parts);
    for (int i = 0; i < DEV_DEVICE_MAX; ++i) {
        const auto device = static_cast<DEV_DEVICE_ENUM>(i);
        if (device == DEV_DEVICE_INVALID) {
            m_device_table[i] = INVALID_DWORD;
            continue;
        }
        const std::string* file = programmer_files[static_cast<DWORD>(i)];
        const bool by_file = file != nullptr && !search_device(device, false) && find_pcf(*file);
        m_device_table[i] = by_file ? m_index : device_entry(device);
    }
    for (int part = 0; part < DEV_PART_MAX; ++part) {
        m_part_table[part] = part == DEV_PART_INVALID ? INVALID_DWORD : part_entry(part);
    }
}

void PGMDEV_DEV_INFO_MANAGER::write_tables(BYTE* data, QWORD size, DWORD& index) const {
    PACKED_WRITER writer(data, size, index, DEV_INFO_FORMAT);
    const auto counts = index_table_counts();
    const std::array tables{m_family_table, m_device_table, m_part_table};
    for (std::size_t i = 0; i < tables.size(); ++i) {
        write_index_table(writer, INDEX_TABLES[i], {tables[i], counts[i]});
    }
}

void PGMDEV_DEV_INFO_MANAGER::print_table(BYTE** data, DWORD& index) {
    compute_tables();
    write_tables(*data, PACKED_TRUSTED_SIZE, index);
}

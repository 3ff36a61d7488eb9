#include "pgmdev_dev_info_manager.h"

#include <algorithm>
#include <utility>

#include "gen.h"
#include "msg.h"
#include "packed/file.h"
#include "pgmdev_dev_info_manager_auto_export.h"
#include "profiles/records.h"
#include "report.h"

// Life of a manager, the loading of its database, and the look-ups.

namespace {

constexpr const char* SOURCE = "pgm/pgmdev/pgmdev_dev_info_manager";
constexpr const char* DATABASE_FILE = "/programmer/pgm_dev_info.pcf";
constexpr const char* GENERIC = "Generic";
constexpr int LISTING_DEBUG_LEVEL = 2;

enum DEBUG_MODE : DWORD { LIST_RECORDS = 1, LIST_FAMILIES = 2, LIST_DEVICES = 3, LIST_PARTS = 4 };

}  // namespace

const std::array<std::string, PGMDEV_DEV_INFO_MANAGER::TOTAL_DEVICE_DATABASE_MEMBER>
    PGMDEV_DEV_INFO_MANAGER::m_db_name_list = [] {
        std::array<std::string, TOTAL_DEVICE_DATABASE_MEMBER> names;
        std::transform(PGMDEV_DEVICE_INFO_MEMBERS.begin(), PGMDEV_DEVICE_INFO_MEMBERS.end(), names.begin(),
                       [](const auto& member) { return std::string(member.name); });
        return names;
    }();

PGMDEV_DEV_INFO_MANAGER::PGMDEV_DEV_INFO_MANAGER(bool no_load, DWORD debug_mode) : m_debug_mode(debug_mode) {
    make_tables();
    if (!no_load) {
        initialize_device_database(FIO_PATH(gen_get_device_db_fullpath() + DATABASE_FILE));
    }
}

PGMDEV_DEV_INFO_MANAGER::PGMDEV_DEV_INFO_MANAGER(const PGMDEV_DEV_INFO_MANAGER& other) {
    *this = other;
}

PGMDEV_DEV_INFO_MANAGER& PGMDEV_DEV_INFO_MANAGER::operator=(const PGMDEV_DEV_INFO_MANAGER& other) {
    if (this == &other) {
        return *this;
    }
    hold_arrays();
    other.hold_arrays();
    m_database_owner = other.m_database_owner;
    m_table_owners = other.m_table_owners;
    m_part_owners = other.m_part_owners;

    m_version = other.m_version;
    m_device_count = other.m_device_count;
    m_type_count = other.m_type_count;
    m_index = other.m_index;
    m_csv_memory_size = other.m_csv_memory_size;
    m_device_database = other.m_device_database;
    m_debug_mode = other.m_debug_mode;
    m_family_table = other.m_family_table;
    m_device_table = other.m_device_table;
    m_part_table = other.m_part_table;
    m_pgm_parts = other.m_pgm_parts;
    return *this;
}

PGMDEV_DEV_INFO_MANAGER::~PGMDEV_DEV_INFO_MANAGER() {
    hold_arrays();
}

void PGMDEV_DEV_INFO_MANAGER::hold_arrays() const {
    if (m_database_owner.get() != m_device_database) {
        m_database_owner.reset(m_device_database);
    }
    const std::array tables{m_family_table, m_device_table, m_part_table};
    for (std::size_t i = 0; i < tables.size(); ++i) {
        if (m_table_owners[i].get() != tables[i]) {
            m_table_owners[i].reset(tables[i]);
        }
    }
    PART_OWNERS owners;
    for (PGMDEV_PGM_PART* part : m_pgm_parts) {
        const auto held = m_part_owners.find(part);
        owners.try_emplace(part, held != m_part_owners.end() ? held->second : std::shared_ptr<PGMDEV_PGM_PART>(part));
    }
    m_part_owners.swap(owners);
}

void PGMDEV_DEV_INFO_MANAGER::make_tables() {
    hold_arrays();
    const auto counts = index_table_counts();
    const std::array tables{&m_family_table, &m_device_table, &m_part_table};
    for (std::size_t i = 0; i < tables.size(); ++i) {
        m_table_owners[i].reset(new DWORD[counts[i]]);
        *tables[i] = m_table_owners[i].get();
        std::fill_n(*tables[i], counts[i], INVALID_DWORD);
    }
}

void PGMDEV_DEV_INFO_MANAGER::unload() {
    m_version = 0;
    m_device_count = 0;
    m_type_count = 0;
    m_index = 0;
    hold_arrays();
    m_database_owner.reset();
    m_device_database = nullptr;
    make_tables();
}

void PGMDEV_DEV_INFO_MANAGER::initialize_device_database(FIO_PATH device_file) {
    const PACKED_BODY body = read_packed_file(device_file, DEV_INFO_FORMAT);
    if (body.data == nullptr) {
        return;
    }
    const DWORD memory_size = body.size;
    PGMDEV_REQUIRE(memory_size > get_table_size(), "memory_size > get_table_size()", SOURCE);
    const DWORD previous = std::exchange(m_csv_memory_size, memory_size - get_table_size());
    try {
        parse_body(body.data.get(), memory_size, false);
    } catch (...) {
        m_csv_memory_size = previous;
        throw;
    }
}

bool PGMDEV_DEV_INFO_MANAGER::parse_database(unsigned char* data, bool generating) {
    parse_body(data, PACKED_TRUSTED_SIZE, generating);
    return false;
}

void PGMDEV_DEV_INFO_MANAGER::parse_body(const BYTE* data, QWORD size, bool generating) {
    DWORD index = 0;
    PACKED_READER reader(data, size, index, DEV_INFO_FORMAT);
    const PACKED_BODY_HEAD head = reader.body_head();
    PGMDEV_REQUIRE(m_device_database == nullptr, "m_device_database == NULL", SOURCE);
    try {
        m_version = head.version;
        m_device_count = head.record_count;
        m_type_count = head.member_count;

        // Searches go over all records of a valid database, even if the file has fewer.
        const QWORD records = std::min<QWORD>(head.record_count, dev_info_records_in(size));
        make_tables();
        m_database_owner.reset(new PGMDEV_DEVICE_INFO[std::max<QWORD>(records, TOTAL_DATABASE_DEVICE)]);
        m_device_database = m_database_owner.get();
        for (DWORD record = 0; record < m_device_count; ++record) {
            read_dev_info_members(reader, m_device_database[record]);
            reader.confirm_record_end();
        }
        reader.confirm_database_end();
        if (!generating) {
            PGMDEV_REQUIRE(index == m_csv_memory_size, "index == m_csv_memory_size", SOURCE);
            read_tables(data, size, index);
            list_loaded();
        }
    } catch (...) {
        unload();
        throw;
    }
}

void PGMDEV_DEV_INFO_MANAGER::get_database(const BYTE* data, DWORD& index, DWORD record) {
    PACKED_READER reader(data, PACKED_TRUSTED_SIZE, index, DEV_INFO_FORMAT);
    read_dev_info_members(reader, m_device_database[record]);
}

void PGMDEV_DEV_INFO_MANAGER::get_table(const BYTE* data, DWORD& index) {
    read_tables(data, PACKED_TRUSTED_SIZE, index);
}

void PGMDEV_DEV_INFO_MANAGER::read_tables(const BYTE* data, QWORD size, DWORD& index) {
    PGMDEV_REQUIRE(m_device_database != nullptr && m_family_table != nullptr && m_device_table != nullptr &&
                       m_part_table != nullptr,
                   "m_device_database != NULL && m_family_table != NULL && m_device_table != NULL && "
                   "m_part_table != NULL",
                   SOURCE);
    PACKED_READER reader(data, size, index, DEV_INFO_FORMAT);
    const auto counts = index_table_counts();
    const std::array tables{m_family_table, m_device_table, m_part_table};
    for (std::size_t i = 0; i < tables.size(); ++i) {
        read_index_table(reader, INDEX_TABLES[i], {tables[i], counts[i]});
    }
}

DWORD PGMDEV_DEV_INFO_MANAGER::get_table_size() {
    DWORD size = 0;
    for (const DWORD count : index_table_counts()) {
        size += 1 + 4 + count * 4;  // marker, count, entries
    }
    return size;
}

const PGMDEV_DEVICE_INFO* PGMDEV_DEV_INFO_MANAGER::get_device_database() {
    return m_device_database;
}

PGMDEV_DEVICE_INFO* PGMDEV_DEV_INFO_MANAGER::look_up(const DWORD* table, DWORD entry) {
    m_index = table[entry];
    if (m_index == INVALID_DWORD) {
        return nullptr;
    }
    PGMDEV_DEVICE_INFO* info = copy_database();
    PGMDEV_REQUIRE(info != nullptr, "info != NULL", SOURCE);
    return info;
}

PGMDEV_DEVICE_INFO* PGMDEV_DEV_INFO_MANAGER::get_db_by_family(DEV_FAMILY_ENUM family) {
    const auto entry = static_cast<DWORD>(family);  // a negative number is out of range, too
    PGMDEV_REQUIRE(entry < DWORD{DEV_FAMILY_MAX}, "family < DEV_FAMILY_MAX", SOURCE);
    return look_up(m_family_table, entry);
}

PGMDEV_DEVICE_INFO* PGMDEV_DEV_INFO_MANAGER::get_db_by_device(DEV_DEVICE_ENUM device) {
    const auto entry = static_cast<DWORD>(device);
    PGMDEV_REQUIRE(entry < DWORD{DEV_DEVICE_MAX}, "device < DEV_DEVICE_MAX", SOURCE);
    return look_up(m_device_table, entry);
}

PGMDEV_DEVICE_INFO* PGMDEV_DEV_INFO_MANAGER::get_db_by_part(int part) {
    const auto entry = static_cast<DWORD>(part);
    PGMDEV_REQUIRE(entry < static_cast<DWORD>(DEV_PART_MAX), "part < DEV_PART_MAX", SOURCE);
    return look_up(m_part_table, entry);
}

PGMDEV_DEVICE_INFO* PGMDEV_DEV_INFO_MANAGER::copy_database() {
    return pgmdev_copy_device_info(m_device_database, m_index, TOTAL_DATABASE_DEVICE);
}

void PGMDEV_DEV_INFO_MANAGER::print_database(DWORD record, std::string name) {
    const PGMDEV_DEVICE_INFO& info =
        pgmdev_device_info_at(m_device_database, record, m_device_count, "record < m_device_count");
    const std::string heading = "Record " + std::to_string(record) + (name.empty() ? "" : " for " + name);
    msg_local_vdebug("PGMDEV", LISTING_DEBUG_LEVEL, "%s", pgmdev_list_device_info(info, heading).c_str());
}

void PGMDEV_DEV_INFO_MANAGER::list_loaded() {
    const auto list = [this](DWORD record, const std::string& name) {
        if (record != INVALID_DWORD) {
            print_database(record, name);
        }
    };
    switch (m_debug_mode) {
        case LIST_RECORDS:
            for (DWORD record = 0; record < m_device_count; ++record) {
                print_database(record, "");
            }
            break;
        case LIST_FAMILIES:
            for (int i = DEV_FAMILY_INVALID + 1; i < DEV_FAMILY_MAX; ++i) {
                const auto family = static_cast<DEV_FAMILY_ENUM>(i);
                list(m_family_table[i], family == DEV_FAMILY_GENERIC ? GENERIC : dstr_get_user_string(family));
            }
            break;
        case LIST_DEVICES:
            for (int i = DEV_DEVICE_INVALID + 1; i < DEV_DEVICE_MAX; ++i) {
                const auto device = static_cast<DEV_DEVICE_ENUM>(i);
                list(m_device_table[i], device == DEV_DEVICE_GENERIC ? GENERIC : dstr_get_user_string(device));
            }
            break;
        case LIST_PARTS:
            for (int part = 0; part < DEV_PART_MAX; ++part) {
                if (part != DEV_PART_INVALID) {
                    list(m_part_table[part], part == DEV_PART_GENERIC ? GENERIC : dstr_get_user_string(part));
                }
            }
            break;
        default:
            break;
    }
}

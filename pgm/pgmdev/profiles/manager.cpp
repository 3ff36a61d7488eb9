#include "pgmdev_dev_info_manager.h"

#include <algorithm>
#include <memory>
#include <utility>

#include "doubts.h"
#include "file_info.h"
#include "gen.h"
#include "msg.h"
#include "packed/file.h"
#include "pgmdev_dev_info_manager_auto_export.h"
#include "profiles/loading.h"
#include "profiles/records.h"
#include "report.h"

// Life of a manager, the loading of its database, and the look-ups.

namespace {

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
    try {
        make_tables();
        if (!no_load) {
            initialize_device_database(FIO_PATH(gen_get_device_db_fullpath() + DATABASE_FILE));
        }
    } catch (...) {
        release();
        throw;
    }
}

PGMDEV_DEV_INFO_MANAGER::PGMDEV_DEV_INFO_MANAGER(const PGMDEV_DEV_INFO_MANAGER& other) {
    *this = other;
}

PGMDEV_DEV_INFO_MANAGER& PGMDEV_DEV_INFO_MANAGER::operator=(const PGMDEV_DEV_INFO_MANAGER& other) {
    if (this == &other) {
        return *this;
    }
    std::vector<PGMDEV_PGM_PART*> parts = other.m_pgm_parts;
    std::map<PGMDEV_PGM_PART*, PGMDEV_SHARES<PGMDEV_PGM_PART>> part_shares;
    for (PGMDEV_PGM_PART* part : parts) {
        const auto shares = other.m_part_shares.try_emplace(part).first;
        shares->second.prepare(shares->first);
        part_shares[part];
    }
    // NOLINTNEXTLINE(cert-oop58-cpp): the hidden sides of both have to know who shares
    other.m_database_shares.prepare(other.m_device_database);
    const std::array other_tables{&other.m_family_table, &other.m_device_table, &other.m_part_table};
    for (std::size_t i = 0; i < other_tables.size(); ++i) {
        other.m_table_shares[i].prepare(*other_tables[i]);
    }
    // Nothing fails from here on: a copy that fails leaves both managers as they were.
    for (auto& [part, shares] : part_shares) {
        shares.accompany(other.m_part_shares.find(part)->second, part);
    }
    drop_parts(0);
    m_pgm_parts.swap(parts);
    m_part_shares.swap(part_shares);
    m_database_shares.share(other.m_database_shares, m_device_database);
    for (std::size_t i = 0; i < other_tables.size(); ++i) {
        m_table_shares[i].share(other.m_table_shares[i], *tables()[i]);
    }
    m_version = other.m_version;
    m_device_count = other.m_device_count;
    m_type_count = other.m_type_count;
    m_index = other.m_index;
    m_csv_memory_size = other.m_csv_memory_size;
    m_debug_mode = other.m_debug_mode;
    return *this;
}

PGMDEV_DEV_INFO_MANAGER::~PGMDEV_DEV_INFO_MANAGER() {
    release();
}

void PGMDEV_DEV_INFO_MANAGER::release() noexcept {
    drop_parts(0);
    m_database_shares.release(m_device_database);
    for (std::size_t i = 0; i < m_table_shares.size(); ++i) {
        m_table_shares[i].release(*tables()[i]);
    }
}

std::array<DWORD**, 3> PGMDEV_DEV_INFO_MANAGER::tables() {
    return {&m_family_table, &m_device_table, &m_part_table};
}

/// Lets the parts of the part list go, but for the first ones.
void PGMDEV_DEV_INFO_MANAGER::drop_parts(std::size_t kept) noexcept {
    while (m_pgm_parts.size() > kept) {
        PGMDEV_PGM_PART* part = m_pgm_parts.back();
        m_pgm_parts.pop_back();
        const auto shares = m_part_shares.find(part);
        if (shares == m_part_shares.end()) {
            delete part;
        } else {
            shares->second.release(part);
            m_part_shares.erase(shares);
        }
    }
}

/// Makes the tables that are missing; no record governs anything in them. Those that are there are filled in place:
/// copies share them, and pointers to them stay good.
void PGMDEV_DEV_INFO_MANAGER::make_tables() {
    const auto counts = index_table_counts();
    for (std::size_t i = 0; i < counts.size(); ++i) {
        DWORD*& table = *tables()[i];
        if (table == nullptr) {
            auto made = std::make_unique_for_overwrite<DWORD[]>(counts[i]);
            std::fill_n(made.get(), counts[i], INVALID_DWORD);
            m_table_shares[i].release(table);
            table = made.release();
        }
    }
}

void PGMDEV_DEV_INFO_MANAGER::initialize_device_database(FIO_PATH device_file) {
    tell_doubts(device_file.fullpath(), DATABASE_DIGEST_KEY);
    const PACKED_BODY body = read_packed_file(device_file, DEV_INFO_FORMAT);
    if (body.data == nullptr) {
        return;
    }
    const DWORD memory_size = body.size;
    PGMDEV_REQUIRE(memory_size > get_table_size(), "memory_size > get_table_size()", DEV_INFO_MANAGER_FILE);
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
    PGMDEV_REQUIRE(m_device_database == nullptr, "m_device_database == NULL", DEV_INFO_MANAGER_FILE);
    LOADING loading(*this);
    m_version = head.version;
    m_device_count = head.record_count;
    m_type_count = head.member_count;

    // Searches go over all records of a valid database, even if the file has fewer.
    const QWORD records = std::min<QWORD>(head.record_count, PROFILE_CODEC::most_records_in(size));
    m_database_shares.release(m_device_database);
    m_device_database = new PGMDEV_DEVICE_INFO[std::max<QWORD>(records, TOTAL_DATABASE_DEVICE)];
    for (DWORD record = 0; record < m_device_count; ++record) {
        PROFILE_CODEC::read(reader, m_device_database[record]);
        reader.confirm_record_end();
    }
    reader.confirm_database_end();
    if (!generating) {
        PGMDEV_REQUIRE(index == m_csv_memory_size, "index == m_csv_memory_size", DEV_INFO_MANAGER_FILE);
        read_tables(data, size, index);
        list_loaded();
    }
    loading.done();
}

void PGMDEV_DEV_INFO_MANAGER::get_database(const BYTE* data, DWORD& index, DWORD record) {
    PACKED_READER reader(data, PACKED_TRUSTED_SIZE, index, DEV_INFO_FORMAT);
    PROFILE_CODEC::read(reader, m_device_database[record]);
}

void PGMDEV_DEV_INFO_MANAGER::get_table(const BYTE* data, DWORD& index) {
    read_tables(data, PACKED_TRUSTED_SIZE, index);
}

void PGMDEV_DEV_INFO_MANAGER::read_tables(const BYTE* data, QWORD size, DWORD& index) {
    PGMDEV_REQUIRE(m_device_database != nullptr && m_family_table != nullptr && m_device_table != nullptr &&
                       m_part_table != nullptr,
                   "m_device_database != NULL && m_family_table != NULL && m_device_table != NULL && "
                   "m_part_table != NULL",
                   DEV_INFO_MANAGER_FILE);
    PACKED_READER reader(data, size, index, DEV_INFO_FORMAT);
    const auto counts = index_table_counts();
    const std::array tables{m_family_table, m_device_table, m_part_table};
    for (std::size_t i = 0; i < tables.size(); ++i) {
        read_index_table(reader, INDEX_TABLES[i], {tables[i], counts[i]});
    }
}

DWORD PGMDEV_DEV_INFO_MANAGER::get_table_size() {
    return index_tables_size();
}

const PGMDEV_DEVICE_INFO* PGMDEV_DEV_INFO_MANAGER::get_device_database() {
    return m_device_database;
}

PGMDEV_DEVICE_INFO* PGMDEV_DEV_INFO_MANAGER::look_up(const DWORD* table, DWORD entry) {
    m_index = table != nullptr ? table[entry] : INVALID_DWORD;  // a deriving class may have taken the table away
    if (m_index == INVALID_DWORD) {
        return nullptr;
    }
    PGMDEV_DEVICE_INFO* info = copy_database();
    PGMDEV_REQUIRE(info != nullptr, "info != NULL", DEV_INFO_MANAGER_FILE);
    return info;
}

PGMDEV_DEVICE_INFO* PGMDEV_DEV_INFO_MANAGER::get_db_by_family(DEV_FAMILY_ENUM family) {
    const auto entry = static_cast<DWORD>(family);  // a negative number is out of range, too
    PGMDEV_REQUIRE(entry < DWORD{DEV_FAMILY_MAX}, "family < DEV_FAMILY_MAX", DEV_INFO_MANAGER_FILE);
    return look_up(m_family_table, entry);
}

PGMDEV_DEVICE_INFO* PGMDEV_DEV_INFO_MANAGER::get_db_by_device(DEV_DEVICE_ENUM device) {
    const auto entry = static_cast<DWORD>(device);
    PGMDEV_REQUIRE(entry < DWORD{DEV_DEVICE_MAX}, "device < DEV_DEVICE_MAX", DEV_INFO_MANAGER_FILE);
    return look_up(m_device_table, entry);
}

PGMDEV_DEVICE_INFO* PGMDEV_DEV_INFO_MANAGER::get_db_by_part(int part) {
    const auto entry = static_cast<DWORD>(part);
    PGMDEV_REQUIRE(entry < static_cast<DWORD>(DEV_PART_MAX), "part < DEV_PART_MAX", DEV_INFO_MANAGER_FILE);
    return look_up(m_part_table, entry);
}

PGMDEV_DEVICE_INFO* PGMDEV_DEV_INFO_MANAGER::copy_database() {
    return pgmdev_copy_device_info(m_device_database, m_index, TOTAL_DATABASE_DEVICE);
}

void PGMDEV_DEV_INFO_MANAGER::print_database(DWORD record, std::string name) {
    const PGMDEV_DEVICE_INFO& info =
        pgmdev_device_info_at(m_device_database, record, m_device_count, "record < m_device_count");
    const std::string heading = "Record " + std::to_string(record) + (name.empty() ? "" : " for " + name);
    msg_local_vdebug(PGMDEV_MODULE, LISTING_DEBUG_LEVEL, "%s", pgmdev_list_device_info(info, heading).c_str());
}

void PGMDEV_DEV_INFO_MANAGER::list_loaded() {
    const auto list_table = [this](const DWORD* table, int end, auto invalid, auto generic) {
        for (int i = 0; i < end; ++i) {
            const auto identifier = static_cast<decltype(invalid)>(i);
            if (identifier != invalid && table[i] != INVALID_DWORD) {
                print_database(table[i], identifier == generic ? GENERIC : dstr_get_user_string(identifier));
            }
        }
    };
    switch (m_debug_mode) {
        case LIST_RECORDS:
            for (DWORD record = 0; record < m_device_count; ++record) {
                print_database(record, "");
            }
            break;
        case LIST_FAMILIES:
            list_table(m_family_table, DEV_FAMILY_MAX, DEV_FAMILY_INVALID, DEV_FAMILY_GENERIC);
            break;
        case LIST_DEVICES:
            list_table(m_device_table, DEV_DEVICE_MAX, DEV_DEVICE_INVALID, DEV_DEVICE_GENERIC);
            break;
        case LIST_PARTS:
            list_table(m_part_table, DEV_PART_MAX, DEV_PART_INVALID, DEV_PART_GENERIC);
            break;
        default:
            break;
    }
}

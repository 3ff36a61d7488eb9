#include "pgmdev_flash_manager.h"

#include <algorithm>
#include <memory>
#include <tuple>
#include <utility>

#include "cfg.h"
#include "doubts.h"
#include "file_info.h"
#include "flash/default_rows.h"
#include "flash/records.h"
#include "flash/switches.h"
#include "gen.h"
#include "packed/file.h"
#include "report.h"

// Life of a manager, and the loading of its database.

namespace {

constexpr const char* DATABASE_FILE = "/programmer/pgm_flash.pcf";

}  // namespace

const std::array<std::string, PGMDEV_FLASH_MANAGER::TOTAL_DATABASE_MEMBER> PGMDEV_FLASH_MANAGER::m_name_list = [] {
    std::array<std::string, TOTAL_DATABASE_MEMBER> names;
    std::transform(PGMDEV_SFL_FLASH_MEMBERS.begin(), PGMDEV_SFL_FLASH_MEMBERS.end(), names.begin(),
                   [](const PGMDEV_SFL_FLASH_MEMBER& member) { return std::string(member.name); });
    return names;
}();

PGMDEV_FLASH_MANAGER::PGMDEV_FLASH_MANAGER(bool /*unused*/, DWORD device_count, bool empty, bool print_on_load)
    : m_print_on_load(print_on_load ? 1 : 0), m_device_count(device_count) {
    if (empty) {
        return;
    }
    try {
        initialize_flash_database(FIO_PATH(gen_get_device_db_fullpath() + DATABASE_FILE));
        PGMDEV_REQUIRE(device_count > 0, "count > 0", FLASH_MANAGER_FILE);
        make_map();
    } catch (...) {
        release();
        throw;
    }
}

PGMDEV_FLASH_MANAGER::PGMDEV_FLASH_MANAGER(const PGMDEV_FLASH_MANAGER& other) {
    *this = other;
}

PGMDEV_FLASH_MANAGER& PGMDEV_FLASH_MANAGER::operator=(const PGMDEV_FLASH_MANAGER& other) {
    if (this == &other) {
        return *this;
    }
    PGMDEV_SFL_FLASH_INFO ini_flash_info = other.m_ini_flash_info;
    // NOLINTBEGIN(cert-oop58-cpp): the hidden sides of both have to know who shares
    other.m_database_shares.prepare(other.m_flash_database);
    other.m_map_shares.prepare(other.m_device_to_flash_map);
    // NOLINTEND(cert-oop58-cpp)
    // Nothing fails from here on: a copy that fails leaves both managers as they were.
    m_database_shares.share(other.m_database_shares, m_flash_database);
    m_map_shares.share(other.m_map_shares, m_device_to_flash_map);
    m_print_on_load = other.m_print_on_load;
    m_version = other.m_version;
    m_device_count = other.m_device_count;
    m_flash_count = other.m_flash_count;
    m_ini_count = other.m_ini_count;
    m_type_count = other.m_type_count;
    m_ini_flash_info = std::move(ini_flash_info);
    m_counted_database = other.m_counted_database;
    m_slots = other.m_slots;
    return *this;
}

PGMDEV_FLASH_MANAGER::~PGMDEV_FLASH_MANAGER() {
    release();
}

void PGMDEV_FLASH_MANAGER::release() noexcept {
    m_database_shares.release(m_flash_database);
    m_map_shares.release(m_device_to_flash_map);
}

void PGMDEV_FLASH_MANAGER::make_map() {
    auto map = std::make_unique_for_overwrite<DWORD[]>(m_device_count);
    std::fill_n(map.get(), m_device_count, INVALID_DWORD);
    m_map_shares.release(m_device_to_flash_map);
    m_device_to_flash_map = map.release();
}

/// What a manager has loaded, taken out of it for as long as something else is loaded into its place.
class PGMDEV_FLASH_MANAGER::LOADED {
public:
    explicit LOADED(PGMDEV_FLASH_MANAGER& manager)
        : m_manager(manager),
          m_ini_flash_info(manager.m_ini_flash_info),
          m_counts{manager.m_version, manager.m_flash_count, manager.m_ini_count, manager.m_type_count,
                   manager.m_slots},
          m_counted_database(manager.m_counted_database) {
        m_shares.take_over(manager.m_database_shares, manager.m_flash_database, m_database);
    }
    LOADED(const LOADED&) = delete;
    LOADED& operator=(const LOADED&) = delete;

    /// Gives way to what was loaded instead, or takes its place again.
    ~LOADED() {
        if (!m_kept) {
            m_shares.release(m_database);
            return;
        }
        m_manager.m_database_shares.release(m_manager.m_flash_database);
        m_manager.m_database_shares.take_over(m_shares, m_database, m_manager.m_flash_database);
        m_manager.m_counted_database = m_counted_database;
        std::tie(m_manager.m_version, m_manager.m_flash_count, m_manager.m_ini_count, m_manager.m_type_count,
                 m_manager.m_slots) = m_counts;
        std::swap(m_manager.m_ini_flash_info, m_ini_flash_info);
    }

    void give_way() { m_kept = false; }

private:
    PGMDEV_FLASH_MANAGER& m_manager;
    PGMDEV_SFL_FLASH_INFO m_ini_flash_info;
    std::tuple<DWORD, DWORD, DWORD, DWORD, DWORD> m_counts;
    const PGMDEV_SFL_FLASH_INFO* m_counted_database;
    PGMDEV_SFL_FLASH_INFO* m_database = nullptr;
    PGMDEV_SHARES<PGMDEV_SFL_FLASH_INFO[]> m_shares;
    bool m_kept = true;
};

void PGMDEV_FLASH_MANAGER::initialize_flash_database(FIO_PATH flash_file) {
    tell_doubts(flash_file.fullpath(), DATABASE_DIGEST_KEY);
    const PACKED_BODY body = read_packed_file(flash_file, FLASH_FORMAT);
    if (body.data != nullptr) {
        parse_body(body.data.get(), body.size);
    }
}

bool PGMDEV_FLASH_MANAGER::parse_database(BYTE* payload) {
    parse_body(payload, PACKED_TRUSTED_SIZE);
    return false;
}

void PGMDEV_FLASH_MANAGER::parse_body(const BYTE* body, QWORD size) {
    LOADED before(*this);
    DWORD cursor = 0;
    PACKED_READER reader(body, size, cursor, FLASH_FORMAT);
    const PACKED_BODY_HEAD head = reader.body_head();
    m_version = head.version;
    m_flash_count = head.record_count;
    m_type_count = head.member_count;
    parse_ext_flash_info();

    const DWORD extra = m_ini_flash_info.device_name.empty() ? 0 : 1;
    const QWORD slots = std::min<QWORD>(head.record_count, FLASH_CODEC::most_records_in(size)) + extra;
    m_flash_database = new PGMDEV_SFL_FLASH_INFO[slots];
    m_counted_database = m_flash_database;
    m_slots = static_cast<DWORD>(slots);
    m_ini_count = extra;

    for (DWORD slot = extra; slot - extra < m_flash_count;) {
        if (read_record(body, size, cursor, slot)) {
            ++slot;
        } else {
            null_info_database(&m_flash_database[slot]);
            --m_flash_count;
        }
        reader.confirm_record_end();
    }
    reader.confirm_database_end();

    confirm_default_value(extra);
    if (extra != 0) {
        copy_ini_database();
        ++m_flash_count;
    }
    m_ini_count = 0;
    before.give_way();
    if (m_print_on_load != 0) {
        for (DWORD i = 0; i < m_flash_count; ++i) {
            print_database(i);
        }
    }
}

bool PGMDEV_FLASH_MANAGER::get_database(BYTE* payload, DWORD& cursor, DWORD slot) {
    return read_record(payload, PACKED_TRUSTED_SIZE, cursor, slot);
}

bool PGMDEV_FLASH_MANAGER::read_record(const BYTE* body, QWORD size, DWORD& cursor, DWORD slot) {
    PACKED_READER reader(body, size, cursor, FLASH_FORMAT);
    FLASH_CODEC::read(reader, m_flash_database[slot]);
    return enable_device(slot);
}

void PGMDEV_FLASH_MANAGER::null_info_database(PGMDEV_SFL_FLASH_INFO* record) {
    *record = PGMDEV_SFL_FLASH_INFO();
}

void PGMDEV_FLASH_MANAGER::copy_ini_database() {
    PGMDEV_REQUIRE(m_flash_database != nullptr, "m_flash_database != NULL", FLASH_MANAGER_FILE);
    m_flash_database[0] = m_ini_flash_info;
}

void PGMDEV_FLASH_MANAGER::confirm_default_value(DWORD first) {
    PGMDEV_REQUIRE(m_flash_database != nullptr || m_flash_count == 0, "m_flash_database != NULL", FLASH_MANAGER_FILE);
    const PGMDEV_SFL_FLASH_INFO* const begin = m_flash_database + first;
    const PGMDEV_SFL_FLASH_INFO* const end = begin + m_flash_count;
    const DEFAULT_ROWS defaults({begin, end});
    if (defaults.one_each()) {
        return;
    }
    // In the order of the records, so that the first faulty name is reported.
    for (const PGMDEV_SFL_FLASH_INFO* record = begin; record != end; ++record) {
        const DWORD count = defaults.count(record->device_name);
        PGMDEV_REQUIRE(count <= 1, "!one_default", FLASH_MANAGER_FILE);
        PGMDEV_REQUIRE(count == 1, "one_default", FLASH_MANAGER_FILE);
    }
}

bool PGMDEV_FLASH_MANAGER::enable_device(DWORD index) {
    PGMDEV_REQUIRE(m_flash_database != nullptr, "m_flash_database != NULL", FLASH_MANAGER_FILE);
    PGMDEV_REQUIRE(index < QWORD{m_flash_count} + m_ini_count, "index < (m_flash_count + m_ini_count)",
                   FLASH_MANAGER_FILE);
    const PGMDEV_SFL_FLASH_INFO& record = m_flash_database[index];
    PGMDEV_REQUIRE(!record.ini.empty(), "!ini.empty()", FLASH_MANAGER_FILE);
    return is_always_enabled(record) || cfg_is_on(ENABLING_SWITCH + record.ini, false) != 0;
}

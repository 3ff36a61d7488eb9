#include "pgmdev_hps_mgr.h"

#include <algorithm>
#include <cstddef>
#include <memory>
#include <mutex>
#include <type_traits>

#include "hps/tables.h"
#include "static_mutex.h"

// The HPS managers: three singletons. The two flash managers differ only in their records.

namespace {

constexpr DWORD STAMP_SIZE = 32;
static_assert(PGMDEV_HPS_NAND_STAMP.size() == STAMP_SIZE && PGMDEV_HPS_SPI_STAMP.size() == STAMP_SIZE);

/// Guards the creation and destruction of all three.
STATIC_MUTEX g_mutex;

template <class RECORD>
constexpr std::nullptr_t MEMBERS = nullptr;
template <>
constexpr auto MEMBERS<PGMDEV_HPS_NAND_STRUCTURE> = PGMDEV_HPS_NAND_MEMBERS;
template <>
constexpr auto MEMBERS<PGMDEV_HPS_SPI_STRUCTURE> = PGMDEV_HPS_SPI_MEMBERS;

template <class RECORD>
void point_at_own_values(RECORD& record) {
    static_assert(std::extent_v<decltype(RECORD::values)> == MEMBERS<RECORD>.size());
    void** value = record.values;
    for (const auto& member : MEMBERS<RECORD>) {
        std::visit([&](auto field) { *value++ = &(record.*field); }, member.field);
    }
}

template <class RECORD>
void copy_values(const RECORD& from, RECORD& to) {
    for (const auto& member : MEMBERS<RECORD>) {
        std::visit([&](auto field) { to.*field = from.*field; }, member.field);
    }
}

PGMDEV_HPS_NAND_STRUCTURE record_of(const HPS_NAND_ROW& row) {
    PGMDEV_HPS_NAND_STRUCTURE record;
    record.manufacturer_id = row.manufacturer_id;
    record.device_id = row.device_id;
    record.device_byte_size = row.device_byte_size;
    return record;
}

PGMDEV_HPS_SPI_STRUCTURE record_of(const HPS_SPI_ROW& row) {
    PGMDEV_HPS_SPI_STRUCTURE record;
    record.silicon_id = row.silicon_id;
    record.silicon_id_mask = HPS_SPI_SILICON_ID_MASK;
    record.ext_id = row.ext_id;
    record.ext_id_mask = row.ext_id_mask;
    record.manufacturer_name = row.manufacturer_name;
    record.device_name = row.device_name;
    record.device_bit_size = row.device_bit_size;
    record.device_sector_byte = row.device_sector_byte;
    record.page_byte = row.page_byte;
    record.bulk_erase_time = row.bulk_erase_time;
    record.code_a = row.code_a;
    record.code_b = row.code_b;
    record.sec_erase_time = row.sec_erase_time;
    record.code_c = HPS_SPI_CODE_C;
    record.die_count = row.die_count;
    record.flag_a = row.flag_a;
    record.erase_opcode = row.erase_opcode;
    record.program_opcode = row.program_opcode;
    record.read_opcode = row.read_opcode;
    return record;
}

/// Appends a copy of the record, and returns it; the list owns it.
template <class RECORD>
RECORD* append(std::vector<RECORD*>& list, const RECORD& record) {
    auto copy = std::make_unique<RECORD>(record);
    list.push_back(copy.get());
    return copy.release();
}

/// Reads the user's records from a block, up to its end or the first that it does not hold whole.
template <class RECORD>
void read_user_records(PGMDEV_FLASH_INI_ENUM which, std::string_view stamp, std::vector<RECORD*>& list,
                       std::vector<RECORD*>& user_list) {
    DWORD size = 0;
    const std::unique_ptr<BYTE[]> block(PGMDEV_FLASH_INI::read_flash_ini_data(which, size));
    if (block == nullptr || size <= STAMP_SIZE || !std::equal(stamp.begin(), stamp.end(), block.get())) {
        return;
    }
    RECORD scratch;
    std::array<PGMDEV_PARAM_TYPE, MEMBERS<RECORD>.size()> types{};
    std::transform(MEMBERS<RECORD>.begin(), MEMBERS<RECORD>.end(), types.begin(),
                   [](const auto& member) { return member.type(); });
    DWORD position = STAMP_SIZE;
    while (position < size && PGMDEV_FLASH_INI::assign_flash_ini_data(block.get(), position, size, types.size(),
                                                                      types.data(), scratch.values)) {
        user_list.push_back(append(list, scratch));
    }
}

template <class RECORD>
void destroy_records(std::vector<RECORD*>& list) {
    for (const RECORD* record : list) {
        delete record;
    }
    list.clear();
}

/// An instance that nobody deleted goes with the library.
struct CLEAN_UP {
    ~CLEAN_UP() {
        PGMDEV_HPS_MGR::delete_mgr();
        PGMDEV_HPS_NAND_MGR::delete_mgr();
        PGMDEV_HPS_SPI_MGR::delete_mgr();
    }
} clean_up;

}  // namespace

PGMDEV_HPS_MGR* PGMDEV_HPS_MGR::m_mgr = nullptr;
PGMDEV_HPS_NAND_MGR* PGMDEV_HPS_NAND_MGR::m_mgr = nullptr;
PGMDEV_HPS_SPI_MGR* PGMDEV_HPS_SPI_MGR::m_mgr = nullptr;

PGMDEV_HPS_MGR* PGMDEV_HPS_MGR::get_mgr() {
    const std::scoped_lock lock(g_mutex);
    if (m_mgr == nullptr) {
        m_mgr = new PGMDEV_HPS_MGR;
    }
    return m_mgr;
}

void PGMDEV_HPS_MGR::delete_mgr() {
    const std::scoped_lock lock(g_mutex);
    delete m_mgr;
    m_mgr = nullptr;
}

std::span<const PGMDEV_HPS_STRUCTURE> PGMDEV_HPS_MGR::get_kinds() {
    return HPS_KINDS;
}

const PGMDEV_HPS_STRUCTURE* PGMDEV_HPS_MGR::get_current_hps() {
    return m_current_hps < HPS_KINDS.size() ? &HPS_KINDS[m_current_hps] : nullptr;
}

bool PGMDEV_HPS_MGR::set_current_hps(DWORD id) {
    m_current_hps = INVALID_DWORD;
    for (DWORD i = 0; i < HPS_KINDS.size(); ++i) {
        if (HPS_KINDS[i].id == id) {
            m_current_hps = i;
            return true;
        }
    }
    return false;
}

PGMDEV_HPS_NAND_STRUCTURE::PGMDEV_HPS_NAND_STRUCTURE() {
    point_at_own_values(*this);
}

PGMDEV_HPS_NAND_STRUCTURE::PGMDEV_HPS_NAND_STRUCTURE(const PGMDEV_HPS_NAND_STRUCTURE& other)
    : PGMDEV_HPS_NAND_STRUCTURE() {
    copy_values(other, *this);
}

PGMDEV_HPS_NAND_STRUCTURE& PGMDEV_HPS_NAND_STRUCTURE::operator=(const PGMDEV_HPS_NAND_STRUCTURE& other) {
    copy_values(other, *this);
    return *this;
}

PGMDEV_HPS_NAND_MGR* PGMDEV_HPS_NAND_MGR::get_mgr() {
    const std::scoped_lock lock(g_mutex);
    if (m_mgr == nullptr) {
        m_mgr = new PGMDEV_HPS_NAND_MGR;
    }
    return m_mgr;
}

void PGMDEV_HPS_NAND_MGR::delete_mgr() {
    const std::scoped_lock lock(g_mutex);
    delete m_mgr;
    m_mgr = nullptr;
}

PGMDEV_HPS_NAND_MGR::PGMDEV_HPS_NAND_MGR() {
    try {
        initialize_ini_file();
        for (const HPS_NAND_ROW& row : HPS_NAND_ROWS) {
            append(m_list, record_of(row));
        }
    } catch (...) {
        destroy_records(m_list);
        throw;
    }
}

PGMDEV_HPS_NAND_MGR::~PGMDEV_HPS_NAND_MGR() {
    destroy_records(m_list);
}

void PGMDEV_HPS_NAND_MGR::initialize_ini_file() {
    read_user_records(PGMDEV_FLASH_INI_HPS_NAND, PGMDEV_HPS_NAND_STAMP, m_list, m_user_list);
}

PGMDEV_HPS_SPI_STRUCTURE::PGMDEV_HPS_SPI_STRUCTURE() {
    point_at_own_values(*this);
}

PGMDEV_HPS_SPI_STRUCTURE::PGMDEV_HPS_SPI_STRUCTURE(const PGMDEV_HPS_SPI_STRUCTURE& other) : PGMDEV_HPS_SPI_STRUCTURE() {
    copy_values(other, *this);
}

PGMDEV_HPS_SPI_STRUCTURE& PGMDEV_HPS_SPI_STRUCTURE::operator=(const PGMDEV_HPS_SPI_STRUCTURE& other) {
    copy_values(other, *this);
    return *this;
}

PGMDEV_HPS_SPI_MGR* PGMDEV_HPS_SPI_MGR::get_mgr() {
    const std::scoped_lock lock(g_mutex);
    if (m_mgr == nullptr) {
        m_mgr = new PGMDEV_HPS_SPI_MGR;
    }
    return m_mgr;
}

void PGMDEV_HPS_SPI_MGR::delete_mgr() {
    const std::scoped_lock lock(g_mutex);
    delete m_mgr;
    m_mgr = nullptr;
}

PGMDEV_HPS_SPI_MGR::PGMDEV_HPS_SPI_MGR() {
    try {
        initialize_ini_file();
        for (const HPS_SPI_ROW& row : HPS_SPI_ROWS) {
            append(m_list, record_of(row));
        }
    } catch (...) {
        destroy_records(m_list);
        throw;
    }
}

PGMDEV_HPS_SPI_MGR::~PGMDEV_HPS_SPI_MGR() {
    destroy_records(m_list);
}

void PGMDEV_HPS_SPI_MGR::initialize_ini_file() {
    read_user_records(PGMDEV_FLASH_INI_HPS_SPI, PGMDEV_HPS_SPI_STAMP, m_list, m_user_list);
}

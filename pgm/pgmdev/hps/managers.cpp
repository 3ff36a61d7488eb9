#include <algorithm>
#include <cstddef>
#include <memory>
#include <mutex>
#include <type_traits>
#include <utility>

#include "hps/built_in_records.h"
#include "hps/kinds.h"
#include "pgmdev_hps_mgr.h"
#include "pgmdev_hps_nand_mgr.h"
#include "pgmdev_hps_spi_mgr.h"
#include "static_mutex.h"
#include "unloading.h"

// The HPS managers: three singletons. The two flash managers differ only in their records.

namespace {

constexpr DWORD STAMP_SIZE = 32;
static_assert(PGMDEV_HPS_NAND_STAMP.size() == STAMP_SIZE && PGMDEV_HPS_SPI_STAMP.size() == STAMP_SIZE);

/// Guards the places of all three.
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

/// Appends a copy of the record; the list owns it.
template <class RECORD>
void append(std::vector<RECORD*>& list, const RECORD& record) {
    auto copy = std::make_unique<RECORD>(record);
    list.push_back(copy.get());
    (void)copy.release();
}

/// Appends the encoded records from a position on, up to the end or the first that is not there whole.
template <class RECORD>
void append_encoded(std::vector<RECORD*>& list, const BYTE* data, DWORD position, DWORD size) {
    RECORD scratch;
    std::array<PGMDEV_PARAM_TYPE, MEMBERS<RECORD>.size()> types{};
    std::transform(MEMBERS<RECORD>.begin(), MEMBERS<RECORD>.end(), types.begin(),
                   [](const auto& member) { return member.type(); });
    while (position < size &&
           PGMDEV_FLASH_INI::assign_flash_ini_data(data, position, size, types.size(), types.data(), scratch.values)) {
        append(list, scratch);
    }
}

template <class RECORD>
void append_user_records(std::vector<RECORD*>& list, PGMDEV_FLASH_INI_ENUM which, std::string_view stamp) {
    DWORD size = 0;
    const std::unique_ptr<BYTE[]> block(PGMDEV_FLASH_INI::read_flash_ini_data(which, size));
    if (block != nullptr && size > STAMP_SIZE && std::equal(stamp.begin(), stamp.end(), block.get())) {
        append_encoded(list, block.get(), STAMP_SIZE, size);
    }
}

template <class RECORD>
void destroy_records(std::vector<RECORD*>& list) {
    for (const RECORD* record : list) {
        delete record;
    }
    list.clear();
}

/// Puts a manager, or none, into the place of another one, which comes back. No host is called meanwhile.
template <class MANAGER>
MANAGER* exchange(MANAGER*& place, MANAGER* manager) {
    const std::scoped_lock lock(g_mutex);
    return std::exchange(place, manager);
}

template <class MANAGER>
MANAGER* present(MANAGER*& place) {
    const std::scoped_lock lock(g_mutex);
    return place;
}

/// Puts a new manager into its place, unless another thread was sooner: then that thread's stays there, and the result
/// is the one to delete.
template <class MANAGER>
MANAGER* put_first(MANAGER*& place, MANAGER* manager) {
    const std::scoped_lock lock(g_mutex);
    if (place != nullptr) {
        return manager;
    }
    place = manager;
    return nullptr;
}

/// An instance that nobody deleted goes with the library.
struct CLEAN_UP {
    ~CLEAN_UP() {
        if (library_is_unloading()) {
            PGMDEV_HPS_MGR::delete_mgr();
            PGMDEV_HPS_NAND_MGR::delete_mgr();
            PGMDEV_HPS_SPI_MGR::delete_mgr();
        }
    }
} clean_up;

}  // namespace

// What the three managers have in common, defined for one of them: only its own functions may create and delete it.
// NOLINTBEGIN(bugprone-macro-parentheses): names of types do not stand in parentheses.
#define SINGLETON(MANAGER)                                      \
    MANAGER* MANAGER::m_mgr = nullptr;                          \
    MANAGER* MANAGER::get_mgr() {                               \
        MANAGER* manager = present(m_mgr);                      \
        while (manager == nullptr) {                            \
            delete put_first(m_mgr, new MANAGER);               \
            manager = present(m_mgr);                           \
        }                                                       \
        return manager;                                         \
    }                                                           \
    void MANAGER::delete_mgr() {                                \
        delete exchange(m_mgr, static_cast<MANAGER*>(nullptr)); \
    }
// NOLINTEND(bugprone-macro-parentheses)

// The record and the manager of one kind of flash, NAND or SPI.
#define FLASH_MANAGER(KIND)                                                                                  \
    PGMDEV_HPS_##KIND##_STRUCTURE::PGMDEV_HPS_##KIND##_STRUCTURE() {                                         \
        point_at_own_values(*this);                                                                          \
    }                                                                                                        \
    PGMDEV_HPS_##KIND##_STRUCTURE::PGMDEV_HPS_##KIND##_STRUCTURE(const PGMDEV_HPS_##KIND##_STRUCTURE& other) \
        : PGMDEV_HPS_##KIND##_STRUCTURE() {                                                                  \
        copy_values(other, *this);                                                                           \
    }                                                                                                        \
    PGMDEV_HPS_##KIND##_STRUCTURE& PGMDEV_HPS_##KIND##_STRUCTURE::operator=(                                 \
        const PGMDEV_HPS_##KIND##_STRUCTURE& other) {                                                        \
        if (this != &other) {                                                                                \
            copy_values(other, *this);                                                                       \
        }                                                                                                    \
        return *this;                                                                                        \
    }                                                                                                        \
    SINGLETON(PGMDEV_HPS_##KIND##_MGR)                                                                       \
    PGMDEV_HPS_##KIND##_MGR::PGMDEV_HPS_##KIND##_MGR() {                                                     \
        try {                                                                                                \
            initialize_ini_file();                                                                           \
            append_encoded(m_list, HPS_##KIND##_RECORDS, 0, HPS_##KIND##_RECORDS_LENGTH);                    \
        } catch (...) {                                                                                      \
            destroy_records(m_list);                                                                         \
            throw;                                                                                           \
        }                                                                                                    \
    }                                                                                                        \
    PGMDEV_HPS_##KIND##_MGR::~PGMDEV_HPS_##KIND##_MGR() {                                                    \
        destroy_records(m_list);                                                                             \
    }                                                                                                        \
    void PGMDEV_HPS_##KIND##_MGR::initialize_ini_file() {                                                    \
        append_user_records(m_list, PGMDEV_FLASH_INI_HPS_##KIND, PGMDEV_HPS_##KIND##_STAMP);                 \
        m_user_list = m_list;                                                                                \
    }

SINGLETON(PGMDEV_HPS_MGR)
FLASH_MANAGER(NAND)
FLASH_MANAGER(SPI)

#undef FLASH_MANAGER
#undef SINGLETON

std::span<const PGMDEV_HPS_STRUCTURE> PGMDEV_HPS_MGR::get_kinds() {
    return HPS_KINDS;
}

const PGMDEV_HPS_STRUCTURE* PGMDEV_HPS_MGR::get_current_hps() {
    const DWORD current = m_current_hps.load(std::memory_order_relaxed);
    return current < HPS_KINDS.size() ? &HPS_KINDS[current] : nullptr;
}

bool PGMDEV_HPS_MGR::set_current_hps(DWORD id) {
    DWORD chosen = INVALID_DWORD;
    for (DWORD i = 0; i < HPS_KINDS.size(); ++i) {
        if (HPS_KINDS[i].id == id) {
            chosen = i;
            break;
        }
    }
    m_current_hps.store(chosen, std::memory_order_relaxed);  // in one step: no thread sees none for a moment
    return chosen != INVALID_DWORD;
}

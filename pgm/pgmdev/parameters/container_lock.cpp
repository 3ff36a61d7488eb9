#include <atomic>
#include <chrono>
#include <optional>
#include <thread>

#include "directory_lock.h"
#include "fio.h"
#include "gen.h"
#include "pgmdev_flash_ini.h"

namespace {

constexpr std::chrono::seconds PATIENCE{10};

/// The thread that has the lock: threads wait for each other as processes do, so that there is only one.
std::atomic<std::thread::id> holder;

}  // namespace

class PGMDEV_FLASH_INI_LOCK::STATE {
public:
    STATE() {
        if (holder == std::this_thread::get_id()) {
            return;
        }
        m_lock.emplace(fio_get_unc_full_path(gen_get_module_path()), PATIENCE);
        if (is_held()) {
            holder = std::this_thread::get_id();
        }
    }
    ~STATE() {
        if (m_lock && is_held()) {
            holder = std::thread::id{};
        }
    }
    STATE(const STATE&) = delete;
    STATE& operator=(const STATE&) = delete;

    bool is_held() const noexcept { return !m_lock || !m_lock->is_refused(); }

private:
    std::optional<DIRECTORY_LOCK> m_lock;  ///< none when the thread had it before
};

PGMDEV_FLASH_INI_LOCK::PGMDEV_FLASH_INI_LOCK() : m_state(std::make_unique<STATE>()) {}
PGMDEV_FLASH_INI_LOCK::~PGMDEV_FLASH_INI_LOCK() = default;

bool PGMDEV_FLASH_INI_LOCK::is_held() const noexcept {
    return m_state->is_held();
}

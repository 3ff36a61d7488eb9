#include <chrono>
#include <memory>
#include <mutex>
#include <thread>

#include "directory_lock.h"
#include "fio.h"
#include "gen.h"
#include "pgmdev_flash_ini.h"
#include "static_mutex.h"
#include "unloading.h"

namespace {

constexpr std::chrono::seconds PATIENCE{10};

/// The lock, as long as somebody has it, and the thread that has taken it.
struct TAKEN {
    DIRECTORY_LOCK lock{fio_get_unc_full_path(gen_get_module_path()), PATIENCE};
    std::thread::id thread = std::this_thread::get_id();

    /// A fork copies all of this, the number of its thread, too, but not the lock.
    bool is_held() const noexcept { return !lock.is_refused() && !lock.is_copy(); }
};

/// The one that was taken last. Threads wait for each other as processes do, so that there is no other one.
struct LAST_TAKEN {
    STATIC_MUTEX mutex;
    std::weak_ptr<const TAKEN> taken;
};

/// What this thread has already; null: nothing.
std::shared_ptr<const TAKEN> taken_by_this_thread() {
    auto& last = lasting<LAST_TAKEN>();
    const std::scoped_lock lock(last.mutex);
    auto taken = last.taken.lock();
    return taken != nullptr && taken->is_held() && taken->thread == std::this_thread::get_id() ? taken : nullptr;
}

std::shared_ptr<const TAKEN> newly_taken() {
    auto taken = std::make_shared<const TAKEN>();
    if (taken->is_held()) {
        auto& last = lasting<LAST_TAKEN>();
        const std::scoped_lock lock(last.mutex);
        last.taken = taken;
    }
    return taken;
}

}  // namespace

/// All that one thread takes is the same lock, which is given back with the last of them, in whatever order they go.
class PGMDEV_FLASH_INI_LOCK::STATE {
public:
    STATE() : m_taken(taken_by_this_thread()) {
        if (m_taken == nullptr) {
            m_taken = newly_taken();
        }
    }

    bool is_held() const noexcept { return m_taken->is_held(); }

private:
    std::shared_ptr<const TAKEN> m_taken;
};

PGMDEV_FLASH_INI_LOCK::PGMDEV_FLASH_INI_LOCK() : m_state(std::make_unique<STATE>()) {}
PGMDEV_FLASH_INI_LOCK::~PGMDEV_FLASH_INI_LOCK() = default;

bool PGMDEV_FLASH_INI_LOCK::is_held() const noexcept {
    return m_state->is_held();
}

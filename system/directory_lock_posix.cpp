#include <sys/file.h>

#include <thread>

#include "directory_lock.h"
#include "open_file_posix.h"

namespace {

/// Whether what failed may succeed a moment later: somebody else has the lock, or the system has nothing left to ask with.
bool passes(int error) {
    return error == EWOULDBLOCK || error == EINTR || error == EMFILE || error == ENFILE || error == ENOMEM;
}

}  // namespace

DIRECTORY_LOCK::DIRECTORY_LOCK(const std::filesystem::path& directory, std::chrono::milliseconds patience) {
    constexpr std::chrono::milliseconds PAUSE{5};
    const auto end = std::chrono::steady_clock::now() + patience;
    m_process = ::getpid();
    for (;;) {
        if (m_handle == NONE) {
            m_handle = open_file(directory.c_str(), O_RDONLY | O_DIRECTORY);
        }
        if (m_handle != NONE && ::flock(static_cast<int>(m_handle), LOCK_EX | LOCK_NB) == 0) {
            return;
        }
        if (!passes(errno)) {
            return;  // no such directory, or a file system without such locks
        }
        if (std::chrono::steady_clock::now() >= end) {
            m_refused = true;
            return;
        }
        std::this_thread::sleep_for(PAUSE);
    }
}

bool DIRECTORY_LOCK::is_copy() const noexcept {
    return m_process != ::getpid();
}

DIRECTORY_LOCK::~DIRECTORY_LOCK() {
    if (m_handle != NONE) {
        if (!is_copy()) {
            ::flock(static_cast<int>(m_handle), LOCK_UN);  // a forked process may still have the descriptor open
        }
        ::close(static_cast<int>(m_handle));
    }
}

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>
#include <thread>

#include "directory_lock.h"

DIRECTORY_LOCK::DIRECTORY_LOCK(const std::filesystem::path& directory, std::chrono::milliseconds patience) {
    constexpr std::chrono::milliseconds PAUSE{5};
    do {
        m_handle = ::open(directory.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    } while (m_handle == NONE && errno == EINTR);
    if (m_handle == NONE) {
        return;
    }
    const auto end = std::chrono::steady_clock::now() + patience;
    while (::flock(static_cast<int>(m_handle), LOCK_EX | LOCK_NB) != 0) {
        if (errno != EWOULDBLOCK && errno != EINTR) {
            return;  // a file system without such locks
        }
        if (std::chrono::steady_clock::now() >= end) {
            m_taken = true;
            return;
        }
        std::this_thread::sleep_for(PAUSE);
    }
}

DIRECTORY_LOCK::~DIRECTORY_LOCK() {
    if (m_handle != NONE) {
        ::close(static_cast<int>(m_handle));
    }
}

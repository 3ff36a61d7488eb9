#pragma once

/// \file
/// Files by their descriptors.

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <span>
#include <utility>

#include "host_types.h"
#include "open_file_posix.h"

/// A file descriptor that is closed when it goes.
class DESCRIPTOR {
public:
    explicit DESCRIPTOR(int number) : m_number(number) {}
    ~DESCRIPTOR() {
        if (m_number >= 0) {
            ::close(m_number);
        }
    }
    DESCRIPTOR(const DESCRIPTOR&) = delete;
    DESCRIPTOR& operator=(const DESCRIPTOR&) = delete;

    int number() const { return m_number; }
    explicit operator bool() const { return m_number >= 0; }

    /// Closes it; false when the system, such as one far away, tells only now that something was not written.
    bool close() { return ::close(std::exchange(m_number, -1)) == 0 || errno == EINTR; }

    /// Leaves it to the caller to close it.
    int release() { return std::exchange(m_number, -1); }

private:
    int m_number;
};

inline bool write_all(int descriptor, std::span<const BYTE> contents) {
    while (!contents.empty()) {
        const ssize_t written = ::write(descriptor, contents.data(), contents.size());
        if (written > 0) {
            contents = contents.subspan(static_cast<std::size_t>(written));
        } else if (written == 0) {
            errno = EIO;  // nobody knows when it would be more
            return false;
        } else if (errno != EINTR) {
            return false;
        }
    }
    return true;
}

inline bool is_same_file(const struct stat& one, const struct stat& other) {
    return one.st_dev == other.st_dev && one.st_ino == other.st_ino;
}

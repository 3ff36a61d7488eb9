#pragma once

/// \file
/// Opening files.

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstddef>

/// Calls an operation of the system until no signal comes in between.
template <class OPERATION>
auto uninterrupted(OPERATION operation) {
    auto result = operation();
    while (result < 0 && errno == EINTR) {
        result = operation();
    }
    return result;
}

/// Holds the numbers of standard streams that are closed, by what can be neither read nor written: the system gives the
/// lowest number that is free.
class HELD_STREAMS {
public:
    HELD_STREAMS() {
        for (int stream = STDIN_FILENO; stream <= STDERR_FILENO; ++stream) {
            if (::fcntl(stream, F_GETFD) < 0) {
                m_holders.at(static_cast<std::size_t>(stream)) = ::open("/", O_PATH | O_CLOEXEC);
            }
        }
    }
    ~HELD_STREAMS() {
        for (const int holder : m_holders) {
            if (holder >= 0) {
                ::close(holder);
            }
        }
    }
    HELD_STREAMS(const HELD_STREAMS&) = delete;
    HELD_STREAMS& operator=(const HELD_STREAMS&) = delete;

private:
    std::array<int, 3> m_holders{-1, -1, -1};
};

/// The descriptor, or -1. It never has the number of a standard stream that was closed: who prints would write into the
/// file, and who asks would read it.
inline int open_file(const char* path, int flags, mode_t mode = 0) {
    const HELD_STREAMS held;
    const int opened = uninterrupted([=] { return ::open(path, flags | O_CLOEXEC, mode); });
    if (opened < 0 || opened > STDERR_FILENO) {
        return opened;
    }
    // Its number could not be held, or was set free since.
    const int higher = ::fcntl(opened, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
    const int error = errno;
    ::close(opened);
    errno = error;
    return higher;
}

#pragma once

#include <fcntl.h>
#include <unistd.h>

#include <array>

constexpr std::array<int, 3> STANDARD_STREAMS{STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO};

/// While it lives, this process has no standard streams.
class CLOSED_STREAMS {
public:
    CLOSED_STREAMS() {
        for (const int stream : STANDARD_STREAMS) {
            m_kept.at(static_cast<std::size_t>(stream)) = ::fcntl(stream, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
        }
        for (const int stream : STANDARD_STREAMS) {
            ::close(stream);
        }
    }
    ~CLOSED_STREAMS() {
        for (const int stream : STANDARD_STREAMS) {
            ::dup2(m_kept.at(static_cast<std::size_t>(stream)), stream);
            ::close(m_kept.at(static_cast<std::size_t>(stream)));
        }
    }
    CLOSED_STREAMS(const CLOSED_STREAMS&) = delete;
    CLOSED_STREAMS& operator=(const CLOSED_STREAMS&) = delete;

private:
    std::array<int, 3> m_kept{};
};

#pragma once

/// \file
/// Operations as processes of their own, which can be ended at any moment, or end by themselves in any way.

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <csignal>

namespace torture {

/// A process that carries out an operation; its standard streams lead nowhere.
class CHILD {
public:
    template <class OPERATION>
    explicit CHILD(const OPERATION& operation) : m_process(::fork()) {
        if (m_process == 0) {
            const int nowhere = ::open("/dev/null", O_RDWR);
            for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
                ::dup2(nowhere, stream);
            }
            operation();
            ::_exit(0);
        }
    }
    ~CHILD() { wait(); }
    CHILD(const CHILD&) = delete;
    CHILD& operator=(const CHILD&) = delete;

    void kill() { ::kill(m_process, SIGKILL); }

    /// Waits for its end: whether it had come to the end of the operation.
    bool wait() {
        if (m_process > 0) {
            ::waitpid(m_process, &m_status, 0);
            m_process = 0;
        }
        return WIFEXITED(m_status) && WEXITSTATUS(m_status) == 0;
    }

private:
    pid_t m_process;
    int m_status = -1;
};

/// How long the operation takes as a process, when nothing gets in between.
template <class OPERATION>
std::chrono::microseconds duration_of(const OPERATION& operation) {
    constexpr int ATTEMPTS = 5;
    auto shortest = std::chrono::microseconds::max();
    for (int i = 0; i < ATTEMPTS; ++i) {
        const auto begin = std::chrono::steady_clock::now();
        CHILD(operation).wait();
        const auto taken = std::chrono::steady_clock::now() - begin;
        shortest = std::min(shortest, std::chrono::duration_cast<std::chrono::microseconds>(taken));
    }
    return shortest;
}

}  // namespace torture

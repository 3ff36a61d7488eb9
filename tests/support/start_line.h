#pragma once

/// \file
/// Threads that are to begin at the same time.

#include <atomic>
#include <thread>

/// A line behind which a number of threads wait for each other. (std::latch of mingw-w64 forgets now and then to wake
/// them up.)
class START_LINE {
public:
    explicit START_LINE(int threads) : m_missing(threads) {}

    void arrive_and_wait() {
        --m_missing;
        while (m_missing > 0) {
            std::this_thread::yield();
        }
    }

private:
    std::atomic<int> m_missing;
};

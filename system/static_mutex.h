#pragma once

/// \file
/// STATIC_MUTEX: a mutex for static objects of a library that may be unloaded. Before anything else runs it is ready,
/// and it has nothing to release.

#if defined(_WIN32)

/// The system's slim lock. The std::mutex of mingw-w64 is neither of the two: it allocates memory when it is first
/// locked, and never releases it.
class STATIC_MUTEX {
public:
    constexpr STATIC_MUTEX() = default;
    STATIC_MUTEX(const STATIC_MUTEX&) = delete;
    STATIC_MUTEX& operator=(const STATIC_MUTEX&) = delete;

    void lock();
    void unlock();

private:
    void* m_state = nullptr;
};

#else

#include <mutex>

using STATIC_MUTEX = std::mutex;

#endif

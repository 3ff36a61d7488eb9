#pragma once

/// \file
/// One writer at a time.

#include <chrono>
#include <cstdint>
#include <filesystem>

/// The lock of a directory, among the processes and threads that ask for it. It is advisory: it keeps nobody out who does
/// not ask. The system takes it back when its holder ends, however that comes about. A copy of the holder that a fork has
/// made meanwhile neither keeps it nor gives it back. Nothing stays in the directory.
class DIRECTORY_LOCK {
public:
    /// Waits for the lock, but no longer than that.
    DIRECTORY_LOCK(const std::filesystem::path& directory, std::chrono::milliseconds patience);
    ~DIRECTORY_LOCK();
    DIRECTORY_LOCK(const DIRECTORY_LOCK&) = delete;
    DIRECTORY_LOCK& operator=(const DIRECTORY_LOCK&) = delete;

    /// Whether somebody else has had the lock all the time, or the system nothing to ask for it with. False also where the
    /// directory has none to give.
    bool is_refused() const noexcept { return m_refused; }

    /// Whether this is what a fork has copied, which is no lock. False where there is no fork.
    bool is_copy() const noexcept;

private:
    static constexpr std::intptr_t NONE = -1;

    std::intptr_t m_handle = NONE;                    ///< the system's
    [[maybe_unused]] std::intptr_t m_process = NONE;  ///< that has asked for it; where there is no fork: none
    bool m_refused = false;
};

#include "directory_lock.h"

#include <windows.h>

namespace {

/// Whether what failed may succeed a moment later: somebody else has the file open, or the system has nothing left to open
/// it with.
bool passes(DWORD error) {
    return error == ERROR_SHARING_VIOLATION || error == ERROR_TOO_MANY_OPEN_FILES || error == ERROR_NOT_ENOUGH_MEMORY ||
           error == ERROR_NO_SYSTEM_RESOURCES;
}

/// Whether the directory still has the file, as it has that of the last one while it goes: the system denies access to it,
/// also to what it is. A directory that may not be entered tells of none.
bool is_there(const std::filesystem::path& file) {
    WIN32_FIND_DATAW found;
    const HANDLE search = FindFirstFileW(file.c_str(), &found);
    return search != INVALID_HANDLE_VALUE && FindClose(search) != 0;
}

}  // namespace

// A file that only one may have open, and that goes when it is closed.
DIRECTORY_LOCK::DIRECTORY_LOCK(const std::filesystem::path& directory, std::chrono::milliseconds patience) {
    constexpr DWORD PAUSE = 5;  // milliseconds
    constexpr int DENIALS = 3;  // of a file that is not there: it has just gone, or the directory may not be written
    const std::filesystem::path file = directory / L".tessary-lock";
    const auto end = std::chrono::steady_clock::now() + patience;
    for (int denials = 0;;) {
        HANDLE handle = CreateFileW(file.c_str(), GENERIC_WRITE | DELETE, 0, nullptr, OPEN_ALWAYS,
                                    FILE_ATTRIBUTE_HIDDEN | FILE_FLAG_DELETE_ON_CLOSE, nullptr);
        if (handle != INVALID_HANDLE_VALUE) {
            m_handle = reinterpret_cast<std::intptr_t>(handle);
            return;
        }
        const DWORD error = GetLastError();
        const bool again = error == ERROR_ACCESS_DENIED ? is_there(file) || ++denials < DENIALS : passes(error);
        if (!again) {
            return;
        }
        if (std::chrono::steady_clock::now() >= end) {
            m_refused = true;
            return;
        }
        Sleep(PAUSE);
    }
}

bool DIRECTORY_LOCK::is_copy() const noexcept {
    return false;
}

DIRECTORY_LOCK::~DIRECTORY_LOCK() {
    if (m_handle != NONE) {
        CloseHandle(reinterpret_cast<HANDLE>(m_handle));  // NOLINT(performance-no-int-to-ptr): what a handle is
    }
}

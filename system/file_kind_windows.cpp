#include "file_kind.h"

#include <windows.h>

namespace fs = std::filesystem;

namespace {

std::error_code last_error() {
    return {static_cast<int>(GetLastError()), std::system_category()};
}

/// Whether the system says that there is no such file, rather than that it cannot tell.
bool is_absence(DWORD error) {
    return error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND || error == ERROR_INVALID_NAME ||
           error == ERROR_BAD_NETPATH || error == ERROR_BAD_NET_NAME;
}

/// A file or directory opened to ask for what it is; closed when it goes.
class ASKED_FILE {
public:
    explicit ASKED_FILE(const fs::path& path)
        : m_handle(CreateFileW(path.c_str(), 0, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                               OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr)) {}
    ~ASKED_FILE() {
        if (m_handle != INVALID_HANDLE_VALUE) {
            CloseHandle(m_handle);
        }
    }
    ASKED_FILE(const ASKED_FILE&) = delete;
    ASKED_FILE& operator=(const ASKED_FILE&) = delete;

    bool is_device() const { return m_handle != INVALID_HANDLE_VALUE && GetFileType(m_handle) == FILE_TYPE_CHAR; }
    bool tell(BY_HANDLE_FILE_INFORMATION& found) const {
        return m_handle != INVALID_HANDLE_VALUE && GetFileInformationByHandle(m_handle, &found) != 0;
    }

private:
    HANDLE m_handle;
};

}  // namespace

fs::file_type file_type_of(const fs::path& path, std::error_code& error) {
    error.clear();
    if (path.native().starts_with(L"\\\\.\\pipe\\")) {
        return fs::file_type::fifo;  // whoever asks more of it has opened it
    }
    const DWORD attributes = GetFileAttributesW(path.c_str());
    const DWORD reason = GetLastError();
    if (path.native().starts_with(L"\\\\.\\") && ASKED_FILE(path).is_device()) {
        return fs::file_type::character;
    }
    if (attributes == INVALID_FILE_ATTRIBUTES) {
        if (!is_absence(reason)) {
            error.assign(static_cast<int>(reason), std::system_category());
            return fs::file_type::none;
        }
        return fs::file_type::not_found;
    }
    return (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0 ? fs::file_type::directory : fs::file_type::regular;
}

bool are_same_file(const fs::path& one, const fs::path& other, std::error_code& error) {
    error.clear();
    BY_HANDLE_FILE_INFORMATION first{};
    BY_HANDLE_FILE_INFORMATION second{};
    const ASKED_FILE first_file(one);  // stays open: its number may be given to another one
    if (!first_file.tell(first) || !ASKED_FILE(other).tell(second)) {
        error = last_error();
        return false;
    }
    return first.dwVolumeSerialNumber == second.dwVolumeSerialNumber && first.nFileIndexHigh == second.nFileIndexHigh &&
           first.nFileIndexLow == second.nFileIndexLow;
}

void remove_file(const fs::path& file, std::error_code& error) {
    error.clear();
    if (DeleteFileW(file.c_str()) == 0 && !is_absence(GetLastError())) {
        error = last_error();
    }
}

bool make_directory(const fs::path& directory, std::error_code& error) {
    error.clear();
    const bool made = CreateDirectoryW(directory.c_str(), nullptr) != 0;
    if (!made) {
        const std::error_code reason = last_error();
        error = is_a_directory(directory) ? std::error_code() : reason;
    }
    return made;
}

void make_directories(const fs::path& directory, std::error_code& error) {
    if (!make_directory(directory, error) && error.value() == ERROR_PATH_NOT_FOUND && directory.has_parent_path() &&
        directory.parent_path() != directory) {
        make_directories(directory.parent_path(), error);
        if (!error) {
            make_directory(directory, error);
        }
    }
}

void remove_with_contents(const fs::path& directory) noexcept {
    try {
        std::error_code ignored;
        fs::remove_all(directory, ignored);
    } catch (...) {
        // There was no memory to go through it.
    }
}

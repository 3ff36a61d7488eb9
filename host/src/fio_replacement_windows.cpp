#include <atomic>
#include <string>

#include <windows.h>

#include "fio.h"
#include "utf8_path.h"

namespace fs = std::filesystem;

namespace {

/// A file handle that is closed when it goes.
class HANDLE_OWNER {
public:
    explicit HANDLE_OWNER(HANDLE handle) : m_handle(handle) {}
    ~HANDLE_OWNER() {
        if (m_handle != INVALID_HANDLE_VALUE) {
            CloseHandle(m_handle);
        }
    }
    HANDLE_OWNER(const HANDLE_OWNER&) = delete;
    HANDLE_OWNER& operator=(const HANDLE_OWNER&) = delete;

    HANDLE get() const { return m_handle; }
    explicit operator bool() const { return m_handle != INVALID_HANDLE_VALUE; }

private:
    HANDLE m_handle;
};

HANDLE open_for_writing(const fs::path& path, DWORD disposition) {
    return CreateFileW(path.c_str(), GENERIC_WRITE, FILE_SHARE_READ, nullptr, disposition, FILE_ATTRIBUTE_NORMAL,
                       nullptr);
}

bool write_all(HANDLE file, std::span<const BYTE> contents) {
    constexpr std::size_t LARGEST_WRITE = 1U << 30U;
    while (!contents.empty()) {
        const auto count = static_cast<DWORD>(contents.size() < LARGEST_WRITE ? contents.size() : LARGEST_WRITE);
        DWORD written = 0;
        if (WriteFile(file, contents.data(), count, &written, nullptr) == 0 || written == 0) {
            return false;
        }
        contents = contents.subspan(written);
    }
    return true;
}

}  // namespace

FIO_REPLACEMENT::FIO_REPLACEMENT(const FIO_PATH& target) {
    if (target.fullpath().empty()) {
        return;
    }
    m_target = fio_get_unc_full_path(target.fullpath());
    std::error_code error;
    if (fs::exists(m_target, error) && !fs::is_regular_file(m_target, error)) {
        return;
    }
    static std::atomic<unsigned> counter{0};
    for (int attempt = 0; attempt < 100; ++attempt) {
        const std::wstring name =
            L".tessary-" + std::to_wstring(GetCurrentProcessId()) + L"-" + std::to_wstring(++counter);
        const fs::path temporary = m_target.parent_path() / name;
        const HANDLE_OWNER file(open_for_writing(temporary, CREATE_NEW));
        if (file) {
            m_temporary = FIO_PATH(utf8_from_path(temporary));
            return;
        }
        if (GetLastError() != ERROR_FILE_EXISTS) {
            return;
        }
    }
}

FIO_REPLACEMENT::~FIO_REPLACEMENT() {
    if (!m_temporary.fullpath().empty()) {
        DeleteFileW(fio_get_unc_full_path(m_temporary.fullpath()).c_str());
    }
}

bool FIO_REPLACEMENT::write(std::span<const BYTE> contents) {
    if (m_temporary.fullpath().empty()) {
        return false;
    }
    const HANDLE_OWNER file(open_for_writing(fio_get_unc_full_path(m_temporary.fullpath()), TRUNCATE_EXISTING));
    m_failed = !file || !write_all(file.get(), contents);
    return !m_failed;
}

bool FIO_REPLACEMENT::commit() {
    if (m_temporary.fullpath().empty() || m_failed) {
        return false;
    }
    const fs::path temporary = fio_get_unc_full_path(m_temporary.fullpath());
    {
        const HANDLE_OWNER file(open_for_writing(temporary, OPEN_EXISTING));
        if (!file || FlushFileBuffers(file.get()) == 0) {
            return false;
        }
    }
    if (MoveFileExW(temporary.c_str(), m_target.c_str(), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH) == 0) {
        return false;
    }
    m_temporary = FIO_PATH();
    return true;
}

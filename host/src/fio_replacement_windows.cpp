#include <atomic>
#include <string>
#include <string_view>

#include <windows.h>

#include "fio.h"
#include "replacing.h"
#include "standard_places.h"
#include "temporary_name.h"
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

/// A number that no other process takes at the same time.
unsigned long long random_number() {
    static std::atomic<unsigned> counter{0};
    LARGE_INTEGER ticks{};
    QueryPerformanceCounter(&ticks);
    const auto mixed = static_cast<unsigned long long>(ticks.QuadPart) * 0x9E3779B97F4A7C15ULL;
    return mixed ^ static_cast<unsigned long long>(GetCurrentProcessId()) << 24U ^ ++counter;
}

/// A search for files that ends when it goes.
class SEARCH {
public:
    explicit SEARCH(const fs::path& pattern) : m_handle(FindFirstFileW(pattern.c_str(), &m_found)) {}
    ~SEARCH() {
        if (m_handle != INVALID_HANDLE_VALUE) {
            FindClose(m_handle);
        }
    }
    SEARCH(const SEARCH&) = delete;
    SEARCH& operator=(const SEARCH&) = delete;

    bool has_found() const { return m_handle != INVALID_HANDLE_VALUE; }
    const WIN32_FIND_DATAW& found() const { return m_found; }
    bool go_on() { return FindNextFileW(m_handle, &m_found) != 0; }

private:
    WIN32_FIND_DATAW m_found{};
    HANDLE m_handle;
};

unsigned long long ticks_of(const FILETIME& time) {
    return static_cast<unsigned long long>(time.dwHighDateTime) << 32U | time.dwLowDateTime;
}

/// Removes what writers have left behind that were ended before they could tidy up. Replacing a file takes seconds: what
/// is a day old has no owner, unless somebody has it open, from whom the system does not take it.
void sweep(const fs::path& directory) {
    constexpr unsigned long long DAY = 24ULL * 60 * 60 * 10'000'000;  // in steps of 100 nanoseconds
    constexpr DWORD NO_FILES = FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_DEVICE | FILE_ATTRIBUTE_REPARSE_POINT;
    FILETIME now{};
    GetSystemTimeAsFileTime(&now);
    SEARCH search(directory / (std::string(TEMPORARY_PREFIX) + "*"));
    for (bool more = search.has_found(); more; more = search.go_on()) {
        const WIN32_FIND_DATAW& found = search.found();
        if (is_temporary_name(std::wstring_view(found.cFileName)) && (found.dwFileAttributes & NO_FILES) == 0 &&
            ticks_of(found.ftLastWriteTime) + DAY < ticks_of(now)) {
            DeleteFileW((directory / found.cFileName).c_str());
        }
    }
}

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

/// Gives the file the other's name. A reader that has the other one open keeps it from being replaced, and programs
/// that look through every new file are such readers; they are soon done.
bool take_place_of(const fs::path& file, const fs::path& other) {
    constexpr int ATTEMPTS = 100;
    constexpr DWORD PAUSE = 10;  // milliseconds
    for (int i = 0; i < ATTEMPTS; ++i) {
        if (MoveFileExW(file.c_str(), other.c_str(), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH) != 0) {
            return true;
        }
        const DWORD error = GetLastError();
        if (error != ERROR_SHARING_VIOLATION && error != ERROR_ACCESS_DENIED) {
            return false;
        }
        Sleep(PAUSE);
    }
    return false;
}

/// Whether the path names a device or a pipe.
bool is_device(const fs::path& path) {
    return path.native().starts_with(L"\\\\.\\");
}

bool may_write(const fs::path& file) {
    return static_cast<bool>(HANDLE_OWNER(open_for_writing(file, OPEN_EXISTING)));
}

/// Makes the file that long. What a longer file needs is taken from the disk at once.
bool set_length(HANDLE file, std::size_t length) {
    LARGE_INTEGER end{};
    end.QuadPart = static_cast<LONGLONG>(length);
    return SetFilePointerEx(file, end, nullptr, FILE_BEGIN) != 0 && SetEndOfFile(file) != 0;
}

/// Takes the room that a file is going to need, so that a full disk shows before anything is lost.
bool take_room(HANDLE file, std::size_t length) {
    LARGE_INTEGER existing{};
    const bool grows = GetFileSizeEx(file, &existing) != 0 && existing.QuadPart < static_cast<LONGLONG>(length);
    return (!grows || set_length(file, length)) && SetFilePointerEx(file, {}, nullptr, FILE_BEGIN) != 0;
}

}  // namespace

bool write_in_place(const fs::path& target, std::span<const BYTE> contents) {
    const HANDLE_OWNER file(open_for_writing(target, OPEN_EXISTING));
    if (!file) {
        return false;
    }
    if (GetFileType(file.get()) != FILE_TYPE_DISK) {
        return write_all(file.get(), contents);
    }
    return take_room(file.get(), contents.size()) && write_all(file.get(), contents) &&
           set_length(file.get(), contents.size()) && FlushFileBuffers(file.get()) != 0;
}

// Every temporary has a name here: a handle cannot give a file one that is not taken and replace another by it in one step.

bool overwrite(const FIO_PATH& file, int /*unnamed*/, std::span<const BYTE> contents) {
    const HANDLE_OWNER opened(open_for_writing(fio_get_unc_full_path(file.fullpath()), TRUNCATE_EXISTING));
    return opened && write_all(opened.get(), contents);
}

bool put_in_place(FIO_PATH& file, int& /*unnamed*/, const fs::path& target) {
    const fs::path native = fio_get_unc_full_path(file.fullpath());
    {
        const HANDLE_OWNER opened(open_for_writing(native, OPEN_EXISTING));
        if (!opened || FlushFileBuffers(opened.get()) == 0) {
            return false;
        }
    }
    return take_place_of(native, target);
}

void discard(const FIO_PATH& file, int /*unnamed*/) {
    DeleteFileW(fio_get_unc_full_path(file.fullpath()).c_str());
}

FIO_REPLACEMENT::FIO_REPLACEMENT(const FIO_PATH& target) {
    if (target.fullpath().empty()) {
        return;
    }
    m_target = fio_get_unc_full_path(target.fullpath());
    if (is_device(m_target)) {
        m_in_place = true;
        return;
    }
    FIO_STATUS existing;
    if (FIO_FILE_SYSTEM::status(target.fullpath().c_str(), &existing) && !existing.regular) {
        return;
    }
    const fs::path directory = path_from_utf8(target.fullpath()).parent_path();
    make_state_directory(directory);
    sweep(m_target.parent_path());
    for (int attempt = 0; attempt < 100; ++attempt) {
        const FIO_PATH temporary(utf8_from_path(directory / temporary_name(random_number())));
        const HANDLE_OWNER file(open_for_writing(fio_get_unc_full_path(temporary.fullpath()), CREATE_NEW));
        if (file) {
            m_temporary = temporary;
            return;
        }
        if (GetLastError() != ERROR_FILE_EXISTS) {
            m_in_place = may_write(m_target);
            return;
        }
    }
}

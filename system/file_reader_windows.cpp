#include "file_reader.h"

#include <algorithm>

#include <windows.h>

#include "replaced_file.h"

namespace {

constexpr DWORD LARGEST_READ = DWORD{1} << 30U;

HANDLE handle_of(std::intptr_t number) {
    return reinterpret_cast<HANDLE>(number);  // NOLINT(performance-no-int-to-ptr): what a handle is
}

}  // namespace

FILE_READER::FILE_READER(const std::filesystem::path& path, FILE_KINDS kinds) {
    constexpr int ATTEMPTS = 100;
    constexpr DWORD PAUSE = 10;  // milliseconds
    HANDLE handle = INVALID_HANDLE_VALUE;
    for (int i = 0; i < ATTEMPTS; ++i) {
        handle = CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING,
                             FILE_ATTRIBUTE_NORMAL, nullptr);
        const DWORD error = handle != INVALID_HANDLE_VALUE ? ERROR_SUCCESS : GetLastError();
        m_absent = error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND;
        const DWORD attributes = error == ERROR_ACCESS_DENIED ? GetFileAttributesW(path.c_str()) : 0;
        const bool is_directory = attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
        if (is_directory || (error != ERROR_SHARING_VIOLATION && error != ERROR_ACCESS_DENIED)) {
            break;
        }
        Sleep(PAUSE);
    }
    if (handle == INVALID_HANDLE_VALUE) {
        return;
    }
    const bool regular = GetFileType(handle) == FILE_TYPE_DISK;
    LARGE_INTEGER size{};
    if ((regular && GetFileSizeEx(handle, &size) == 0) || (!regular && kinds == FILE_KINDS::REGULAR)) {
        CloseHandle(handle);
        return;
    }
    m_handle = reinterpret_cast<std::intptr_t>(handle);
    m_size = static_cast<std::uint64_t>(size.QuadPart);
}

FILE_READER::~FILE_READER() {
    if (is_open()) {
        CloseHandle(handle_of(m_handle));
    }
}

bool FILE_READER::read_at(std::uint64_t offset, std::span<unsigned char> bytes) const {
    while (!bytes.empty()) {
        OVERLAPPED place{};
        place.Offset = static_cast<DWORD>(offset);
        place.OffsetHigh = static_cast<DWORD>(offset >> 32U);
        DWORD count = 0;
        const auto wanted = static_cast<DWORD>(std::min<std::size_t>(bytes.size(), LARGEST_READ));
        if (ReadFile(handle_of(m_handle), bytes.data(), wanted, &count, &place) == 0 || count == 0) {
            return false;
        }
        bytes = bytes.subspan(count);
        offset += count;
    }
    return true;
}

bool FILE_READER::read_some(std::span<char> bytes, std::size_t& count) const {
    DWORD read = 0;
    const auto wanted = static_cast<DWORD>(std::min<std::size_t>(bytes.size(), LARGEST_READ));
    const bool done = ReadFile(handle_of(m_handle), bytes.data(), wanted, &read, nullptr) != 0;
    count = read;
    return done || GetLastError() == ERROR_BROKEN_PIPE;  // how a pipe ends
}

bool may_read_and_write(const std::filesystem::path& file) {
    return open_replaced_file(file, std::ios::out).is_open();
}

#include "scratch.h"

#include <windows.h>

namespace {

/// `directory` is a path free of the length limit, which std::filesystem of mingw-w64 does not know.
void remove_below(const std::wstring& directory) {
    WIN32_FIND_DATAW entry{};
    HANDLE search = FindFirstFileW((directory + L"\\*").c_str(), &entry);
    if (search == INVALID_HANDLE_VALUE) {
        return;
    }
    do {
        const std::wstring name = entry.cFileName;
        if ((entry.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) == 0) {
            DeleteFileW((directory + L"\\" + name).c_str());
        } else if (name != L"." && name != L"..") {
            remove_below(directory + L"\\" + name);
        }
    } while (FindNextFileW(search, &entry) != 0);
    FindClose(search);
    RemoveDirectoryW(directory.c_str());
}

}  // namespace

void remove_tree(const std::filesystem::path& directory) {
    std::filesystem::path plain = directory;
    remove_below(L"\\\\?\\" + plain.make_preferred().native());
}

#include "absolute_path.h"

#include <string>

#include <windows.h>

namespace fs = std::filesystem;

// Not std::filesystem: that of mingw-w64 takes the server of "\\server\share" for a directory of the current drive.
// The system also removes "." and "..", and the blanks and dots at the end, which its names do not have.
fs::path absolute_path(const fs::path& path) {
    std::wstring full;
    for (;;) {
        // With too little room: the room it takes, the final zero included. Otherwise: the length without it.
        const DWORD length = GetFullPathNameW(path.c_str(), static_cast<DWORD>(full.size()), full.data(), nullptr);
        const bool complete = length < full.size();
        full.resize(length);
        if (complete || length == 0) {
            return full;
        }
    }
}

fs::path resolved_path(const fs::path& path) {
    return absolute_path(path);
}

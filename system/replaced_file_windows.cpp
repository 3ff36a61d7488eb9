#include "replaced_file.h"

#include <windows.h>

std::ifstream open_replaced_file(const std::filesystem::path& path, std::ios::openmode mode) {
    constexpr int ATTEMPTS = 100;
    constexpr DWORD PAUSE = 10;  // milliseconds
    std::ifstream file;
    for (int i = 0; i < ATTEMPTS; ++i) {
        file.open(path, mode | std::ios::binary);
        const DWORD error = GetLastError();
        if (file.is_open() || (error != ERROR_SHARING_VIOLATION && error != ERROR_ACCESS_DENIED)) {
            break;
        }
        file.clear();
        Sleep(PAUSE);
    }
    return file;
}

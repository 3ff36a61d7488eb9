#include <windows.h>

#include "fio.h"

// Not std::filesystem: what it stands on takes the question mark in a path free of the length limit for a wildcard.

bool FIO_FILE_SYSTEM::exists(const char* path) {
    FIO_STATUS ignored;
    return status(path, &ignored);
}

bool FIO_FILE_SYSTEM::status(const char* path, FIO_STATUS* status) {
    WIN32_FILE_ATTRIBUTE_DATA found{};
    if (GetFileAttributesExW(fio_get_unc_full_path(path).c_str(), GetFileExInfoStandard, &found) == 0) {
        return false;
    }
    status->regular = (found.dwFileAttributes & (FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_DEVICE)) == 0;
    status->size = status->regular ? QWORD{found.nFileSizeHigh} << 32U | found.nFileSizeLow : 0;
    return true;
}

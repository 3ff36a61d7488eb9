#include <system_error>

#include <windows.h>

#include "files/inspection.h"

std::string system_reason() {
    const DWORD error = GetLastError();
    return error != ERROR_SUCCESS ? std::system_category().message(static_cast<int>(error)) : "";
}

void forget_system_reason() {
    SetLastError(ERROR_SUCCESS);
}

std::string reason_not_to_write(const std::filesystem::path& file) {
    const DWORD attributes = GetFileAttributesW(file.c_str());
    const bool protects = attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_READONLY) != 0;
    return protects ? std::system_category().message(ERROR_ACCESS_DENIED) : "";
}

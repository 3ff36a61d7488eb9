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

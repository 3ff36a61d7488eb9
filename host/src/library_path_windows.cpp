#include <string>

#include <windows.h>

#include "library_path.h"

namespace fs = std::filesystem;

fs::path host_library_directory() {
    HMODULE module = nullptr;
    if (GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                           reinterpret_cast<LPCWSTR>(&host_library_directory), &module) != 0) {
        std::wstring name(MAX_PATH, L'\0');
        for (;;) {
            const DWORD length = GetModuleFileNameW(module, name.data(), static_cast<DWORD>(name.size()));
            if (length == 0) {
                break;
            }
            if (length < name.size()) {
                name.resize(length);
                return fs::path(name).parent_path();
            }
            name.resize(name.size() * 2);  // the name was cut
        }
    }
    std::error_code ignored;
    return fs::current_path(ignored);
}

/// Functions of a library are not replaced by others of that name.
bool is_in_host_library(const void* /*address*/) {
    return true;
}

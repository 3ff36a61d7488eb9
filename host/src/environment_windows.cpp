#include "environment.h"

#include <windows.h>

#include "wide_text.h"

// The narrow functions of the system answer in its code page, in which many names of directories cannot be written.
std::optional<std::string> environment_value(const std::string& name) {
    const std::wstring wide_name = wide_from_utf8(name);
    std::wstring value;
    for (;;) {
        SetLastError(ERROR_SUCCESS);
        // With too little room: the room it takes, the final zero included. Otherwise: the length without it.
        const DWORD length = GetEnvironmentVariableW(wide_name.c_str(), value.data(), static_cast<DWORD>(value.size()));
        if (length == 0) {
            return GetLastError() == ERROR_SUCCESS ? std::optional<std::string>("") : std::nullopt;
        }
        if (length < value.size()) {
            value.resize(length);
            return utf8_from_wide(value);
        }
        value.resize(length);
    }
}

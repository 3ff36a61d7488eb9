#include <windows.h>

#include "environment.h"
#include "fio.h"
#include "standard_places.h"
#include "utf8_path.h"

namespace fs = std::filesystem;

namespace {

fs::path below(const char* variable) {
    const fs::path named = path_from_utf8(environment_value(variable).value_or(""));
    return named.is_absolute() ? named / "tessary" : fs::path();
}

}  // namespace

HABITUAL_DIRECTORIES habitual_directories() {
    return {below("PROGRAMDATA"), below("APPDATA"), below("PROGRAMDATA"), below("LOCALAPPDATA")};
}

// Permissions are lists, of which only the system knows the outcome.
bool may_write_into(const fs::path& directory) {
    HANDLE handle = CreateFileW(fio_get_unc_full_path(utf8_from_path(directory)).c_str(), FILE_ADD_FILE,
                                FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr, OPEN_EXISTING,
                                FILE_FLAG_BACKUP_SEMANTICS, nullptr);
    if (handle == INVALID_HANDLE_VALUE) {
        return false;
    }
    CloseHandle(handle);
    return true;
}

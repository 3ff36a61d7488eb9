#include "fio.h"
#include "utf8_path.h"

// The prefix lifts the limit of 260 characters. It also ends all interpretation of the path, so the path must be
// absolute, normal and written with backslashes. A share "\\server\share" becomes "\\?\UNC\server\share".
std::filesystem::path fio_get_unc_full_path(const std::string& path) {
    std::filesystem::path full = path_from_utf8(FIO_PATH(path).fullpath()).lexically_normal();
    const std::wstring native = full.make_preferred().native();
    if (native.empty() || native.starts_with(L"\\\\?\\") || native.starts_with(L"\\\\.\\")) {
        return native;
    }
    return native.starts_with(L"\\\\") ? L"\\\\?\\UNC\\" + native.substr(2) : L"\\\\?\\" + native;
}

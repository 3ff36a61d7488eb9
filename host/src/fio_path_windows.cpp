#include "fio.h"
#include "utf8_path.h"

namespace {

/// Whether the system takes the path as it stands, be it a file free of the length limit or a device.
bool is_verbatim(const std::wstring& path) {
    return path.starts_with(L"\\\\?\\") || path.starts_with(L"\\\\.\\");
}

}  // namespace

// The prefix lifts the limit of 260 characters. It also ends all interpretation of the path, which an absolute path has
// behind it. A share "\\server\share" becomes "\\?\UNC\server\share".
std::filesystem::path fio_get_unc_full_path(const std::string& path) {
    const std::wstring full = path_from_utf8(FIO_PATH(path).fullpath()).native();
    if (full.empty() || is_verbatim(full)) {
        return full;
    }
    return full.starts_with(L"\\\\") ? L"\\\\?\\UNC\\" + full.substr(2) : L"\\\\?\\" + full;
}

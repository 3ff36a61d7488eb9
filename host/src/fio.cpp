#include "fio.h"

#include "utf8_path.h"

namespace fs = std::filesystem;

FIO_PATH::FIO_PATH(const std::string& path) {
    if (path.empty()) {
        return;
    }
    std::error_code error;
    const fs::path absolute = fs::absolute(path_from_utf8(path), error);
    m_full_path = error ? path : utf8_from_path(absolute);
}

FIO_PATH::FIO_PATH(const char* path) : FIO_PATH(std::string(path)) {}

bool FIO_FILE_SYSTEM::exists(const char* path) {
    std::error_code error;
    return fs::exists(fio_get_unc_full_path(path), error);
}

bool FIO_FILE_SYSTEM::status(const char* path, FIO_STATUS* status) {
    const fs::path file = fio_get_unc_full_path(path);
    std::error_code error;
    const fs::file_status found = fs::status(file, error);
    if (error || !fs::exists(found)) {
        return false;
    }
    status->regular = fs::is_regular_file(found);
    status->size = 0;
    if (status->regular) {
        status->size = fs::file_size(file, error);
    }
    return !error;
}

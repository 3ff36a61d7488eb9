#include "fio.h"

namespace fs = std::filesystem;

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

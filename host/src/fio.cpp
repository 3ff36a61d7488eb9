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

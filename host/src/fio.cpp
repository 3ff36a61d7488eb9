#include "fio.h"

#include "absolute_path.h"
#include "utf8_path.h"

FIO_PATH::FIO_PATH(const std::string& path) {
    if (path.empty()) {
        return;
    }
    const std::filesystem::path absolute = absolute_path(path_from_utf8(path));
    m_full_path = absolute.empty() ? path : utf8_from_path(absolute);
}

FIO_PATH::FIO_PATH(const char* path) : FIO_PATH(std::string(path)) {}

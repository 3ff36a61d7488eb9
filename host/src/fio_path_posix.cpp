#include "fio.h"
#include "utf8_path.h"

std::filesystem::path fio_get_unc_full_path(const std::string& path) {
    return path_from_utf8(FIO_PATH(path).fullpath());
}

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

#include "files/inspection.h"

std::string system_reason() {
    return errno != 0 ? std::generic_category().message(errno) : "";
}

void forget_system_reason() {
    errno = 0;
}

std::string reason_not_to_write(const std::filesystem::path& file) {
    const auto may = [](const std::filesystem::path& path, int what) {
        return ::faccessat(AT_FDCWD, path.c_str(), what, AT_EACCESS) == 0;
    };
    forget_system_reason();
    if (may(file, W_OK) || (errno == ENOENT && may(file.parent_path(), W_OK | X_OK))) {
        return "";
    }
    return system_reason();
}

#include "absolute_path.h"

namespace fs = std::filesystem;

fs::path absolute_path(const fs::path& path) {
    std::error_code error;
    const fs::path absolute = fs::absolute(path, error);
    return error ? fs::path() : absolute;
}

fs::path resolved_path(const fs::path& path) {
    const fs::path absolute = absolute_path(path);
    std::error_code error;
    const fs::path resolved = fs::weakly_canonical(absolute, error);
    return error ? absolute.lexically_normal() : resolved;
}

#include <dirent.h>
#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <string_view>

#include "file_kind.h"

// Not std::filesystem, which ends the process when it gets no memory for this.

namespace {

void remove_at(int place, const char* name) noexcept {
    if (::unlinkat(place, name, 0) == 0 || errno == ENOENT) {
        return;
    }
    const int opened = ::openat(place, name, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
    DIR* const entries = opened >= 0 ? ::fdopendir(opened) : nullptr;
    if (entries != nullptr) {
        while (const dirent* entry = ::readdir(entries)) {
            const std::string_view below = entry->d_name;
            if (below != "." && below != "..") {
                remove_at(opened, entry->d_name);
            }
        }
        ::closedir(entries);
    } else if (opened >= 0) {
        ::close(opened);
    }
    ::unlinkat(place, name, AT_REMOVEDIR);
}

}  // namespace

void remove_with_contents(const std::filesystem::path& directory) noexcept {
    remove_at(AT_FDCWD, directory.c_str());
}

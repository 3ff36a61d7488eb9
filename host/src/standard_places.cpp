#include "standard_places.h"

#include <algorithm>

#include "absolute_path.h"
#include "file_kind.h"
#include "fio.h"
#include "utf8_path.h"

namespace fs = std::filesystem;

namespace {

/// Those that this process has.
std::vector<fs::path> present(std::vector<fs::path> directories) {
    directories.erase(std::remove_if(directories.begin(), directories.end(),
                                     [](const fs::path& directory) { return directory.empty(); }),
                      directories.end());
    return directories;
}

bool is_there(const fs::path& path) {
    return FIO_FILE_SYSTEM::exists(utf8_from_path(path).c_str());
}

}  // namespace

std::vector<fs::path> configuration_directories() {
    const HABITUAL_DIRECTORIES habitual = habitual_directories();
    return present({habitual.system_configuration, habitual.user_configuration});
}

std::vector<fs::path> state_directories() {
    const HABITUAL_DIRECTORIES habitual = habitual_directories();
    return present({habitual.system_state, habitual.user_state});
}

bool is_writable_directory(const fs::path& directory) {
    fs::path existing = directory;
    while (!is_there(existing) && existing.has_relative_path()) {
        existing = existing.parent_path();
    }
    return may_write_into(existing);
}

fs::path writable_place(const fs::path& directory, const std::string& name) {
    if (is_there(directory / name) || is_writable_directory(directory)) {
        return directory;
    }
    const std::vector<fs::path> others = state_directories();
    const auto holds_it = [&name](const fs::path& other) { return is_there(other / name); };
    if (const auto found = std::find_if(others.begin(), others.end(), holds_it); found != others.end()) {
        return *found;
    }
    const auto found = std::find_if(others.begin(), others.end(), is_writable_directory);
    return found != others.end() ? *found : directory;
}

void make_state_directory(const fs::path& directory) {
    const fs::path state = habitual_directories().user_state;
    if (!state.empty() && resolved_path(directory) == resolved_path(state)) {
        std::error_code ignored;  // what is written there will fail, and tell
        make_directories(fio_get_unc_full_path(utf8_from_path(directory)), ignored);
    }
}

#include <filesystem>
#include <mutex>

#include "absolute_path.h"
#include "environment.h"
#include "file_kind.h"
#include "fio.h"
#include "gen.h"
#include "library_path.h"
#include "standard_places.h"
#include "static_mutex.h"
#include "unloading.h"
#include "utf8_path.h"

namespace {

namespace fs = std::filesystem;

/// One overridable directory.
struct DIRECTORY {
    const char* environment;  ///< variable that overrides the place relative to the installation
    std::string set;          ///< what the program set; empty: nothing
};

struct DIRECTORIES {
    STATIC_MUTEX mutex;
    DIRECTORY install{"TESSARY_INSTALL_DIR", {}};
    DIRECTORY device_db{"TESSARY_DEVICE_DB_DIR", {}};
    DIRECTORY module{"TESSARY_MODULE_DIR", {}};
};

DIRECTORIES& directories() {
    return lasting<DIRECTORIES>();
}

/// Absolute, without "." and "..", links followed as far as the directory exists, without a trailing separator.
std::string absolute_directory(const fs::path& path) {
    const fs::path directory = resolved_path(path);
    return utf8_from_path(directory.has_filename() ? directory : directory.parent_path());
}

/// The directory as set or by its environment variable; "" when neither names one.
std::string overridden(const DIRECTORY& directory) {
    const std::scoped_lock lock(directories().mutex);
    if (!directory.set.empty()) {
        return directory.set;
    }
    const std::string value = environment_value(directory.environment).value_or("");
    return !value.empty() ? absolute_directory(path_from_utf8(value)) : value;
}

void set(DIRECTORY& directory, const std::string& path) {
    const std::scoped_lock lock(directories().mutex);
    directory.set = path.empty() ? path : absolute_directory(path_from_utf8(path));
}

fs::path found_installation() {
    const fs::path data = fs::path("share") / "tessary";
    const fs::path library = path_from_utf8(absolute_directory(host_library_directory()));
    for (fs::path directory = library; directory.has_relative_path(); directory = directory.parent_path()) {
        if (is_a_directory(fio_get_unc_full_path(utf8_from_path(directory / data)))) {
            return directory / data;
        }
    }
    return library.parent_path() / data;
}

}  // namespace

std::string gen_get_tessary_path() {
    const std::string path = overridden(directories().install);
    return path.empty() ? absolute_directory(found_installation()) : path;
}

std::string gen_get_device_db_fullpath() {
    const std::string path = overridden(directories().device_db);
    return path.empty() ? gen_get_tessary_path() + "/devices" : path;
}

std::string gen_get_module_path() {
    const std::string path = overridden(directories().module);
    return path.empty() ? absolute_directory(writable_place(host_library_directory(), "pgm_flash.ini")) : path;
}

std::vector<std::string> gen_get_state_paths() {
    std::vector<std::string> paths;
    for (const fs::path& directory : state_directories()) {
        paths.push_back(absolute_directory(directory));
    }
    return paths;
}

void gen_set_tessary_path(const std::string& directory) {
    set(directories().install, directory);
}

void gen_set_device_db_fullpath(const std::string& directory) {
    set(directories().device_db, directory);
}

void gen_set_module_path(const std::string& directory) {
    set(directories().module, directory);
}

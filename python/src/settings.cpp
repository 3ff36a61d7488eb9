#include <array>

#include "bindings.h"
#include "cfg.h"
#include "gen.h"
#include "pgmdev_version.h"
#include "unlocked.h"
#include "values.h"

// Where the library looks for its files, what is configured, and what it is.

namespace {

struct DIRECTORY {
    const char* name;
    std::string (*get)();
    void (*set)(const std::string& directory);
};

constexpr std::array DIRECTORIES{
    DIRECTORY{"install_dir", gen_get_tessary_path, gen_set_tessary_path},
    DIRECTORY{"db_dir", gen_get_device_db_fullpath, gen_set_device_db_fullpath},
    DIRECTORY{"module_dir", gen_get_module_path, gen_set_module_path},
};

py::dict get_directories() {
    py::dict directories;
    for (const DIRECTORY& each : DIRECTORIES) {
        directories[each.name] = to_python(unlocked(each.get));
    }
    return directories;
}

void set_directory(const TEXT& name, const TEXT& path) {
    for (const DIRECTORY& each : DIRECTORIES) {
        if (name.text() == each.name) {
            each.set(path);
            return;
        }
    }
    throw py::key_error(name.text());
}

py::dict versions() {
    py::dict known;
    known["library"] = PGMDEV_VERSION::library();
    known["catalog"] = unlocked(PGMDEV_VERSION::catalog);
    known["flash_stamp"] = PGMDEV_VERSION::flash_stamp();
    known["profile_stamp"] = PGMDEV_VERSION::dev_info_stamp();
    known["body_version"] = PGMDEV_VERSION::body_version();
    return known;
}

}  // namespace

void bind_settings(py::module_& module) {
    module.def("directories", get_directories);
    module.def("set_directory", set_directory);
    module.def("get_setting", [](const TEXT& key) { return to_python(unlocked([&] { return cfg_get_value(key); })); });
    module.def("set_setting", [](const TEXT& key, const TEXT& value) { cfg_set_value(key, value); });
    module.def("clear_setting", [](const TEXT& key) { cfg_clear_value(key); });
    module.def("versions", versions);
}

#include "files/origins.h"

#include <fmt/core.h>

#include <algorithm>

#include "cfg.h"
#include "files/environment.h"
#include "gen.h"
#include "pgm_common.h"
#include "terminal/given_options.h"
#include "utf8_path.h"

namespace {

/// What names a directory other than its default.
struct NAMED_BY {
    const char* option;
    const char* variable;
};

constexpr const char* OUTBOX_KEY = "TESSARY_OUTBOX_DIR";

constexpr NAMED_BY INSTALLATION{"--install-dir", "TESSARY_INSTALL_DIR"};
constexpr NAMED_BY DEVICE_DATABASES{"--db-dir", "TESSARY_DEVICE_DB_DIR"};
constexpr NAMED_BY MODULE{"--module-dir", "TESSARY_MODULE_DIR"};

/// The option or the variable that names the directory; "" when neither does.
std::string named_by(const NAMED_BY& directory) {
    const std::vector<std::string>& values = given_values(directory.option);
    if (!values.empty() && !values.back().empty()) {
        return fmt::format("option {}", directory.option);
    }
    return environment_text(directory.variable).empty() ? ""
                                                        : fmt::format("environment variable {}", directory.variable);
}

std::vector<std::string> installation_origin() {
    const std::string named = named_by(INSTALLATION);
    return {named.empty() ? "default: share/tessary at the libraries" : named};
}

PLACE installed(const char* file, std::string default_place) {
    std::vector<std::string> tried = installation_origin();
    if (!default_place.empty()) {
        tried.insert(tried.begin(), std::move(default_place));
    }
    return {gen_get_tessary_path() + file, std::move(tried)};
}

bool is_state_directory(const std::string& directory) {
    const std::vector<std::string> all = gen_get_state_paths();
    return std::find(all.begin(), all.end(), directory) != all.end();
}

PLACE database_place(const char* file) {
    const std::string named = named_by(DEVICE_DATABASES);
    std::vector<std::string> tried;
    if (named.empty()) {
        tried = installation_origin();
        tried.insert(tried.begin(), "default: devices in the installation directory");
    } else {
        tried.push_back(named);
    }
    return {gen_get_device_db_fullpath() + file, std::move(tried)};
}

}  // namespace

PLACE installation_place() {
    return {gen_get_tessary_path(), installation_origin()};
}

PLACE database_directory_place() {
    return database_place("");
}

PLACE module_place() {
    const std::string named = named_by(MODULE);
    const std::string directory = gen_get_module_path();
    if (!named.empty()) {
        return {directory, {named}};
    }
    return {directory,
            {is_state_directory(directory) ? "default: a state directory, since nothing can be written "
                                             "into the libraries' directory"
                                           : "default: the libraries' directory"}};
}

PLACE flash_database_place() {
    return database_place("/programmer/pgm_flash.pcf");
}

PLACE profile_database_place() {
    return database_place("/programmer/pgm_dev_info.pcf");
}

PLACE part_list_place() {
    return installed("/h/pgm_parts.txt", "");
}

PLACE container_place() {
    PLACE place = module_place();
    place.path += "/pgm_flash.ini";
    return place;
}

PLACE outbox_place() {
    const std::string directory = PGM_COMMON::get_outbox_path();
    for (const std::string& assignment : given_values("--set")) {
        if (assignment.starts_with(std::string(OUTBOX_KEY) + "=")) {
            return {directory, {"option --set"}};
        }
    }
    if (!environment_text(OUTBOX_KEY).empty()) {
        return {directory, {fmt::format("environment variable {}", OUTBOX_KEY)}};
    }
    if (!cfg_get_value(OUTBOX_KEY).empty()) {
        return {directory, {fmt::format("{} in a configuration file", OUTBOX_KEY)}};
    }
    if (is_state_directory(utf8_from_path(path_from_utf8(directory).parent_path()))) {
        return {directory,
                {"default: a state directory, since nothing can be written into the installation directory"}};
    }
    std::vector<std::string> tried = installation_origin();
    tried.insert(tried.begin(), "default: outbox in the installation directory");
    return {directory, std::move(tried)};
}

std::vector<PLACE> configuration_places() {
    std::vector<PLACE> places;
    if (!environment_text("TESSARY_CONFIG_FILE").empty()) {
        return {{cfg_get_file_paths().front(), {"environment variable TESSARY_CONFIG_FILE"}}};
    }
    for (const std::string& path : cfg_get_file_paths()) {
        places.push_back({path, {"default: the system's or the user's own configuration"}});
    }
    places.back() = installed("/tessary.conf", "default: tessary.conf in the installation directory");
    return places;
}

PLACE argument_place(const std::string& path, const std::string& argument) {
    return {path, {"argument " + argument}};
}

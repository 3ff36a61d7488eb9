#include "files/origins.h"

#include <fmt/core.h>

#include "configuration/environment.h"
#include "gen.h"
#include "terminal/given_options.h"

namespace {

/// What names a directory other than its default.
struct NAMED_BY {
    const char* option;
    const char* variable;
};

constexpr NAMED_BY INSTALLATION{"--install-dir", "TESSARY_INSTALL_DIR"};
constexpr NAMED_BY DEVICE_DATABASES{"--db-dir", "TESSARY_DEVICE_DB_DIR"};
constexpr NAMED_BY MODULE{"--module-dir", "TESSARY_MODULE_DIR"};

/// The option or the variable that names the directory; "" when neither does.
std::string named_by(const NAMED_BY& directory) {
    const std::vector<std::string> values = given_values(directory.option);
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
    const std::string named = named_by(MODULE);
    return {gen_get_module_path() + "/pgm_flash.ini", {named.empty() ? "default: the libraries' directory" : named}};
}

PLACE configuration_place() {
    const std::string named = environment_text("TESSARY_CONFIG_FILE");
    return named.empty() ? installed("/tessary.conf", "default: tessary.conf in the installation directory")
                         : PLACE{named, {"environment variable TESSARY_CONFIG_FILE"}};
}

PLACE argument_place(const std::string& path, const std::string& argument) {
    return {path, {"argument " + argument}};
}

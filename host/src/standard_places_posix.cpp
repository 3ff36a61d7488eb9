#include <fcntl.h>
#include <unistd.h>

#include "environment.h"
#include "standard_places.h"
#include "utf8_path.h"

namespace fs = std::filesystem;

namespace {

/// The directory that the variable names, which must be absolute to count, or that below the user's home.
fs::path below_home(const char* variable, const char* place) {
    const fs::path named = path_from_utf8(environment_value(variable).value_or(""));
    if (named.is_absolute()) {
        return named / "tessary";
    }
    const fs::path home = path_from_utf8(environment_value("HOME").value_or(""));
    return home.is_absolute() ? home / place / "tessary" : fs::path();
}

}  // namespace

HABITUAL_DIRECTORIES habitual_directories() {
    const fs::path root = path_from_utf8(environment_value("TESSARY_SYSTEM_ROOT").value_or("") + "/");
    return {root / "etc/tessary", below_home("XDG_CONFIG_HOME", ".config"), root / "var/lib/tessary",
            below_home("XDG_STATE_HOME", ".local/state")};
}

bool may_write_into(const fs::path& directory) {
    return ::faccessat(AT_FDCWD, directory.c_str(), W_OK | X_OK, AT_EACCESS) == 0;
}

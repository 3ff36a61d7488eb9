#include <algorithm>

#include "names/enum_names.h"
#include "pgmdev_mgr.h"
#include "report.h"
#include "stl.h"

// Names of the programmer's enumerations.

namespace {

std::span<const std::string_view> checked_enum_names(PGM_ENUM_TYPE pgm_enum_type) {
    PGMDEV_REQUIRE(pgm_enum_type < PGM_ENUM_TYPE_MAX, "pgm_enum_type < PGM_ENUM_TYPE_MAX", MGR_FILE);
    return enum_names(pgm_enum_type);
}

}  // namespace

bool PGMDEV_MGR::pgm_check_type_enum_supported(PGM_ENUM_TYPE type, DWORD value, std::string* name) {
    const std::span<const std::string_view> names = checked_enum_names(type);
    if (value == 0 || value >= names.size()) {
        return false;
    }
    if (name != nullptr) {
        *name = names[value];
    }
    return true;
}

bool PGMDEV_MGR::pgm_check_type_name_supported(PGM_ENUM_TYPE type, std::string name, DWORD* value) {
    const std::span<const std::string_view> names = checked_enum_names(type);
    stl_toupper(name);
    const auto found = std::find(names.begin(), names.end(), name);
    if (found == names.end()) {
        return false;
    }
    if (value != nullptr) {
        *value = static_cast<DWORD>(found - names.begin());
    }
    return true;
}

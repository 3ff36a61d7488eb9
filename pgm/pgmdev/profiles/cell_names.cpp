#include "profiles/cell_names.h"

#include <algorithm>
#include <array>

#include "pgmdev_dev_info_enumerators.h"
#include "pgmdev_dev_info_manager_auto_export.h"

namespace {

bool find_family(const std::string& name, DWORD& value) {
    for (int family = DEV_FAMILY_INVALID; family < DEV_FAMILY_MAX; ++family) {
        if (pgmdev_family_name(static_cast<DEV_FAMILY_ENUM>(family)) == name) {
            value = static_cast<DWORD>(family);
            return true;
        }
    }
    return false;
}

/// Tables of devices and parts can name the generic one only.
bool find_generic(const std::string& name, int generic, int invalid, DWORD& value) {
    value = static_cast<DWORD>(name.empty() ? invalid : generic);
    return name.empty() || name == "GENERIC";
}

bool find_device(const std::string& name, DWORD& value) {
    return find_generic(name, DEV_DEVICE_GENERIC, DEV_DEVICE_INVALID, value);
}

bool find_part(const std::string& name, DWORD& value) {
    return find_generic(name, DEV_PART_GENERIC, DEV_PART_INVALID, value);
}

bool find_enumerator(const std::string& name, DWORD& value) {
    for (const PGMDEV_DEV_INFO_ENUMERATOR& row : PGMDEV_DEV_INFO_ENUMERATORS) {
        if (row.name == name) {
            value = row.value;
            return true;
        }
    }
    return false;
}

constexpr std::array<CELL_NAMES, 4> TABLES{{
    {"family", find_family},
    {"device", find_device},
    {"part", find_part},
    {"", find_enumerator},
}};

}  // namespace

const CELL_NAMES* find_cell_names(std::string_view type_name) {
    const auto* const found = std::find_if(TABLES.begin(), TABLES.end(),
                                           [&](const CELL_NAMES& table) { return table.type_name == type_name; });
    return found != TABLES.end() ? found : nullptr;
}

bool find_cell_name(std::string_view member, PGMDEV_MANAGER_TYPE kind, const std::string& cell, DWORD& value) {
    // Columns of identifiers are called like the table of their names.
    const CELL_NAMES* names = find_cell_names(kind == PGMDEV_MANAGER_DEVID_ENUM ? member : "");
    return names != nullptr && names->find(cell, value);
}

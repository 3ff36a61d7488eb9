#pragma once

/// \file
/// The names that cells of the device-information table may use for identifiers and enumerators.

#include <string>

#include "pgmdev_types.h"

/// A table of names: of families, devices, parts, or (with the empty type name) of generic enumerators.
struct DEV_INFO_NAMES {
    const char* type_name;

    /// Finds a name, spelled exactly; false when the table does not have it.
    bool (*find)(const std::string& name, DWORD& value);
};

/// The table of that type name; null when there is none.
const DEV_INFO_NAMES* find_dev_info_names(const std::string& type_name);

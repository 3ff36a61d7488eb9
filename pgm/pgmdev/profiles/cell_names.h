#pragma once

/// \file
/// The names that cells of profiles may use for identifiers and enumerators.

#include <string>
#include <string_view>

#include "pgmdev_manager_type.h"
#include "pgmdev_types.h"

/// A table of names: of families, devices, parts, or (with the empty type name) of generic enumerators.
struct CELL_NAMES {
    const char* type_name;

    /// Finds a name, spelled exactly; false when the table does not have it.
    bool (*find)(const std::string& name, DWORD& value);
};

/// The table of that type name; null when there is none.
const CELL_NAMES* find_cell_names(std::string_view type_name);

/// What the cell of an identifier or enumerator stands for; false when no table has the name.
bool find_cell_name(std::string_view member, PGMDEV_MANAGER_TYPE kind, const std::string& cell, DWORD& value);

#pragma once

/// \file
/// The description of the values of an HPS flash record, for everything that loops over them.

#include <array>
#include <string>
#include <string_view>
#include <variant>

#include "pgmdev_flash_ini.h"
#include "pgmdev_types.h"

/// One value of a record: its name, and where it is.
template <class RECORD>
struct PGMDEV_HPS_MEMBER {
    using FIELD = std::variant<std::string RECORD::*, bool RECORD::*, DWORD RECORD::*, QWORD RECORD::*>;

    std::string_view name;
    FIELD field;

    /// How the value is stored in a block; it follows from the type of the field.
    constexpr PGMDEV_PARAM_TYPE type() const {
        constexpr std::array TYPES{PGMDEV_PARAM_STRING, PGMDEV_PARAM_BOOL, PGMDEV_PARAM_DWORD, PGMDEV_PARAM_QWORD};
        return TYPES[field.index()];
    }
};

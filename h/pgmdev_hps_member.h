#pragma once

/// \file
/// The description of the values of an HPS flash record, for everything that loops over them.

#include <array>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "pgmdev_flash_ini.h"
#include "pgmdev_param_value.h"
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

/// Appends a record to the bytes of a block, which begin with the stamp of its kind.
template <class RECORD, class MEMBERS>
void pgmdev_append_hps_record(std::vector<BYTE>& block, const MEMBERS& members, const RECORD& record) {
    for (std::size_t i = 0; i < members.size(); ++i) {
        pgmdev_append_param(block, members[i].type(), record.values[i]);
    }
}

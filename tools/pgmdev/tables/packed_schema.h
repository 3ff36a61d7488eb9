#pragma once

/// \file
/// What one must know of a packed database to read it byte by byte.

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "pgmdev_cell.h"
#include "pgmdev_manager_type.h"
#include "pgmdev_types.h"

struct PACKED_MEMBER {
    std::string_view name;
    PGMDEV_MANAGER_TYPE kind;
    std::string_view unit;
    PGMDEV_NUMBER_BASE base;
};

/// An index table behind the records.
struct PACKED_INDEX {
    PGMDEV_MANAGER_TYPE tag;
    std::string_view name;
    DWORD entries;
};

struct PACKED_SCHEMA {
    std::string_view magic;
    std::string stamp;
    DWORD version;
    std::vector<PACKED_MEMBER> members;
    std::vector<PGMDEV_MANAGER_TYPE> text_tags;    ///< accepted before a text
    std::vector<PGMDEV_MANAGER_TYPE> number_tags;  ///< accepted before a value of 4 bytes
    std::vector<PACKED_INDEX> indexes;             ///< in file order
    /// The name of a member's number, "" when it has none; empty where no number has one.
    std::function<std::string(const PACKED_MEMBER& member, DWORD value)> name_of;
};

/// The members, from the member table of a record.
template <class MEMBERS>
std::vector<PACKED_MEMBER> packed_members(const MEMBERS& table) {
    std::vector<PACKED_MEMBER> members;
    members.reserve(table.size());
    for (const auto& member : table) {
        members.push_back({member.name, member.kind, member.unit, member.base});
    }
    return members;
}

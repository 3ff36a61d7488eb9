#pragma once

/// \file
/// Copying and listing profiles, as loops over the member table. PGMDEV_DEV_INFO_MANAGER offers them on its own
/// records; programs use them on records of theirs.

#include <string>
#include <string_view>
#include <type_traits>
#include <variant>

#include "dstr.h"
#include "msg.h"
#include "pgmdev_cell.h"
#include "pgmdev_dev_info.h"
#include "pgmdev_dev_info_enumerators.h"
#include "stl.h"

/// The source file that reports of copying and listing name.
inline constexpr const char* PGMDEV_DEV_INFO_AUTO_EXPORT = "h/pgmdev_dev_info_manager_auto_export";

/// How source tables spell a family: its name in capitals. "" for a number without a name.
inline std::string pgmdev_family_name(DEV_FAMILY_ENUM family) {
    std::string name = family == DEV_FAMILY_INVALID ? "" : dstr_get_user_string(family);
    stl_toupper(name);
    return name;
}

/// The name of an enumerator's value, or "". Where a value has two names, `is_family` chooses.
inline std::string pgmdev_enumerator_name(DWORD value, bool is_family) {
    std::string_view name;
    for (const PGMDEV_DEV_INFO_ENUMERATOR& row : PGMDEV_DEV_INFO_ENUMERATORS) {
        if (row.value == value && (name.empty() || row.name.starts_with("DEV_FAMILY_") == is_family)) {
            name = row.name;
        }
    }
    return std::string(name);
}

/// The text of a member as a cell of a source table. `nameable` becomes false when no cell can stand for the value:
/// then the text is its number.
inline std::string pgmdev_device_info_cell(const PGMDEV_DEVICE_INFO_MEMBER& member, const PGMDEV_DEVICE_INFO& record,
                                           bool& nameable) {
    nameable = true;
    const auto named = [&nameable](const std::string& name, bool is_none, DWORD value) {
        nameable = is_none || !name.empty();
        return nameable ? name : std::to_string(value);
    };
    return std::visit(
        [&](auto field) -> std::string {
            const auto& value = record.*field;
            using VALUE = std::remove_cvref_t<decltype(value)>;
            if constexpr (std::is_same_v<VALUE, DEV_FAMILY_ENUM>) {
                return named(pgmdev_family_name(value), value == DEV_FAMILY_INVALID, static_cast<DWORD>(value));
            } else if constexpr (std::is_same_v<VALUE, DEV_DEVICE_ENUM>) {
                return named(value == DEV_DEVICE_GENERIC ? "GENERIC" : "", value == DEV_DEVICE_INVALID,
                             static_cast<DWORD>(value));
            } else if constexpr (std::is_same_v<VALUE, int>) {
                return named(value == DEV_PART_GENERIC ? "GENERIC" : "", value == DEV_PART_INVALID,
                             static_cast<DWORD>(value));
            } else {
                if constexpr (std::is_same_v<VALUE, DWORD>) {
                    if (member.kind == PGMDEV_MANAGER_ENUM) {
                        const bool is_family = member.name == "ekp_alg_family";
                        return named(pgmdev_enumerator_name(value, is_family), value == INVALID_DWORD, value);
                    }
                }
                return pgmdev_cell(value, member.base);
            }
        },
        member.field);
}

/// A record as a block of text for people: a heading, then "member = value" a line. Identifiers and enumerators are
/// listed with number and name.
inline std::string pgmdev_list_device_info(const PGMDEV_DEVICE_INFO& record, const std::string& heading) {
    std::string text = heading;
    for (const PGMDEV_DEVICE_INFO_MEMBER& member : PGMDEV_DEVICE_INFO_MEMBERS) {
        bool nameable = false;
        const std::string cell = pgmdev_device_info_cell(member, record, nameable);
        text.append("\n  ").append(member.name).append(" = ");
        if (member.kind != PGMDEV_MANAGER_DEVID_ENUM && member.kind != PGMDEV_MANAGER_ENUM) {
            text += cell;
            continue;
        }
        std::visit(
            [&](auto field) {
                if constexpr (std::is_convertible_v<decltype(record.*field), DWORD>) {
                    text += std::to_string(static_cast<DWORD>(record.*field));
                }
            },
            member.field);
        if (nameable) {
            text += " (" + (cell.empty() ? "none" : cell) + ')';
        }
    }
    return text;
}

/// Record `index` of `count`. An index out of range is reported as `condition`, a null array, too.
inline const PGMDEV_DEVICE_INFO& pgmdev_device_info_at(const PGMDEV_DEVICE_INFO* records, DWORD index, DWORD count,
                                                       const char* condition) {
    const auto require = [](bool holds, const char* text, int line) {
        if (!holds) {
            MSG_INTERNAL_ERROR::report(text, "PGMDEV", PGMDEV_DEV_INFO_AUTO_EXPORT, line);
            throw MSG_INTERNAL_ERROR_EXCEPTION({text, "PGMDEV", PGMDEV_DEV_INFO_AUTO_EXPORT, line});
        }
    };
    require(index < count, condition, __LINE__);
    require(records != nullptr, "m_device_database != NULL", __LINE__);
    return records[index];
}

/// A new copy of record `index` of `count`, which the caller deletes.
inline PGMDEV_DEVICE_INFO* pgmdev_copy_device_info(const PGMDEV_DEVICE_INFO* records, DWORD index, DWORD count) {
    return new PGMDEV_DEVICE_INFO(pgmdev_device_info_at(records, index, count, "m_index < TOTAL_DATABASE_DEVICE"));
}

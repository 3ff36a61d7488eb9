#pragma once

/// \file
/// Records that the library describes by member tables, as loops over these: to values and back.

#include <concepts>
#include <limits>
#include <span>
#include <string>
#include <type_traits>

#include "pgmdev_dev_info.h"
#include "pgmdev_hps_member.h"
#include "pgmdev_sfl_flash_info.h"
#include "records.h"

/// The members of a table, whose rows have a name and a field.
template <class ROW>
std::vector<MEMBER> members_of(std::span<const ROW> table) {
    std::vector<MEMBER> members;
    for (const ROW& row : table) {
        MEMBER member = text_member(std::string(row.name));
        std::visit(
            [&]<class RECORD, class FIELD>(FIELD RECORD::*) {
                if constexpr (std::is_same_v<FIELD, bool>) {
                    member.kind = PGMDEV_KIND_BOOL;
                    member.bits = 1;
                } else if constexpr (!std::is_same_v<FIELD, std::string>) {
                    member.kind = PGMDEV_KIND_NUMBER;
                    member.bits = 8 * sizeof(FIELD);
                }
            },
            row.field);
        if constexpr (requires { row.unit; }) {
            member.unit = row.unit;
            member.base = row.base == PGMDEV_NUMBER_BASE::BASE_16 ? 16 : 10;
        }
        members.push_back(std::move(member));
    }
    return members;
}

inline std::vector<MEMBER> flash_members() {
    return members_of(std::span<const PGMDEV_SFL_FLASH_MEMBER>(PGMDEV_SFL_FLASH_MEMBERS));
}

/// Identifiers and enumerators are numbers with names.
std::vector<MEMBER> profile_members();

/// The value of a field.
inline DATUM value_of(const std::string& text) {
    return text_value(text);
}
inline DATUM value_of(bool flag) {
    return flag_value(flag);
}
template <std::unsigned_integral NUMBER>
DATUM value_of(NUMBER number) {
    return number_value(uint64_t{number});
}

/// A record as values.
template <class ROW, class RECORD>
std::vector<DATUM> values_of(std::span<const ROW> table, const RECORD& record) {
    std::vector<DATUM> values;
    values.reserve(table.size() + 1);
    for (const ROW& row : table) {
        values.push_back(std::visit([&](auto field) { return value_of(record.*field); }, row.field));
    }
    return values;
}

inline std::vector<DATUM> flash_values(const PGMDEV_SFL_FLASH_INFO& record) {
    return values_of(std::span<const PGMDEV_SFL_FLASH_MEMBER>(PGMDEV_SFL_FLASH_MEMBERS), record);
}

std::vector<DATUM> profile_values(const PGMDEV_DEVICE_INFO& record);

/// All records of a flash table.
pgmdev_records flash_records(std::span<const PGMDEV_SFL_FLASH_INFO> records);
pgmdev_records profile_records(std::span<const PGMDEV_DEVICE_INFO> records);

/// The number of a value that must be one of that kind and not larger than `most`.
uint64_t number_from(const pgmdev_value& value, pgmdev_kind kind, uint64_t most);

/// The text of a value that must be one.
std::string text_from(const pgmdev_value& value);

/// A record from values that a program gives, one for each row of the table.
template <class RECORD, class ROW>
RECORD record_from(std::span<const ROW> table, const pgmdev_value* values) {
    RECORD record;
    for (const ROW& row : table) {
        const pgmdev_value& value = *values++;
        std::visit(
            [&](auto field) {
                using FIELD = std::remove_cvref_t<decltype(record.*field)>;
                if constexpr (std::is_same_v<FIELD, std::string>) {
                    record.*field = text_from(value);
                } else if constexpr (std::is_same_v<FIELD, bool>) {
                    record.*field = number_from(value, PGMDEV_KIND_BOOL, 1) != 0;
                } else {
                    record.*field =
                        static_cast<FIELD>(number_from(value, PGMDEV_KIND_NUMBER, std::numeric_limits<FIELD>::max()));
                }
            },
            row.field);
    }
    return record;
}

/// The records that a program gives, one after the other; another number of values is refused.
template <class RECORD, class ROW>
std::vector<RECORD> records_from(std::span<const ROW> table, const pgmdev_value* values, std::size_t count) {
    require_argument(values != nullptr || count == 0, "the values are a null pointer");
    require_argument(count % table.size() == 0, "count is not that of the members of some records");
    std::vector<RECORD> records;
    for (std::size_t i = 0; i < count; i += table.size()) {
        records.push_back(record_from<RECORD>(table, values + i));
    }
    return records;
}

#pragma once

/// \file
/// What the C interface hands out, freed when it goes, and its values as tests compare them.

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "pgmdev_c.h"

/// What a function gives: the place for it, and the object.
template <class OBJECT, void (*FREE)(OBJECT*)>
class OWNED {
public:
    OWNED() = default;
    ~OWNED() { FREE(m_object); }
    OWNED(const OWNED&) = delete;
    OWNED& operator=(const OWNED&) = delete;

    OBJECT** place() {
        FREE(m_object);
        m_object = nullptr;
        return &m_object;
    }
    operator OBJECT*() const { return m_object; }

private:
    OBJECT* m_object = nullptr;
};

using C_ERROR = OWNED<pgmdev_error, pgmdev_error_free>;
using C_STRING = OWNED<pgmdev_string, pgmdev_string_free>;
using C_RECORDS = OWNED<pgmdev_records, pgmdev_records_free>;
using C_ANSWER = OWNED<pgmdev_answer, pgmdev_answer_free>;
using C_FLASH = OWNED<pgmdev_flash_database, pgmdev_flash_free>;
using C_PROFILES = OWNED<pgmdev_profile_database, pgmdev_profile_free>;
using C_TABLE = OWNED<pgmdev_table, pgmdev_table_free>;
using C_PART_INDEX = OWNED<pgmdev_part_index, pgmdev_part_index_free>;
using C_LOCK = OWNED<pgmdev_parameter_lock, pgmdev_parameter_lock_free>;

inline std::string bytes_of(const pgmdev_string* string) {
    return {pgmdev_string_data(string), pgmdev_string_size(string)};
}

/// A status and what was given with it, once the function has returned, as one text: "OK KES50", "NOT_FOUND".
inline std::string said(pgmdev_status status, const C_STRING& string) {
    return std::string(pgmdev_status_name(status)) + (string != nullptr ? " " + bytes_of(string) : "");
}

/// What `said` gives when a class answers with that text.
inline std::string said(const std::string& text) {
    return text.empty() ? "NOT_FOUND" : "OK " + text;
}

/// A value as one text: "-" for none, bytes and numbers in decimal, enumerators as "6 KESTREL".
inline std::string shown(const pgmdev_value& value) {
    std::string text;
    switch (value.kind) {
        case PGMDEV_KIND_NONE:
            return "-";
        case PGMDEV_KIND_TEXT:
            return value.text;
        case PGMDEV_KIND_ENUMERATOR:
            return std::to_string(value.number) + " " + value.text;
        case PGMDEV_KIND_BYTES:
            for (std::size_t i = 0; i < value.text_size; ++i) {
                text += (i == 0 ? "" : " ") + std::to_string(static_cast<unsigned char>(value.text[i]));
            }
            return text;
        default:
            return std::to_string(value.number);
    }
}

/// A record, or the first members of it, as texts.
inline std::vector<std::string> row_of(const pgmdev_records* records, std::size_t record) {
    std::vector<std::string> row;
    for (std::size_t member = 0; member < pgmdev_records_member_count(records); ++member) {
        pgmdev_value value{};
        EXPECT_EQ(pgmdev_records_value(records, record, member, &value, nullptr), PGMDEV_STATUS_OK);
        row.push_back(shown(value));
    }
    return row;
}

using ROWS = std::vector<std::vector<std::string>>;

inline ROWS rows_of(const pgmdev_records* records) {
    ROWS rows;
    for (std::size_t record = 0; record < pgmdev_records_count(records); ++record) {
        rows.push_back(row_of(records, record));
    }
    return rows;
}

/// A list of an answer.
inline ROWS list_of(const pgmdev_answer* answer, const char* name) {
    const pgmdev_records* list = pgmdev_answer_list(answer, name);
    EXPECT_NE(list, nullptr) << name;
    return rows_of(list);
}

/// The values of all members, as an encoding function takes them.
inline std::vector<pgmdev_value> values_of(const pgmdev_records* records, std::size_t record) {
    std::vector<pgmdev_value> values(pgmdev_records_member_count(records));
    EXPECT_EQ(pgmdev_records_values(records, record, values.data(), values.size(), nullptr), PGMDEV_STATUS_OK);
    return values;
}

inline std::vector<std::string> member_names(const pgmdev_records* records) {
    std::vector<std::string> names;
    for (std::size_t i = 0; i < pgmdev_records_member_count(records); ++i) {
        pgmdev_member member{};
        member.struct_size = sizeof member;
        EXPECT_EQ(pgmdev_records_member(records, i, &member, nullptr), PGMDEV_STATUS_OK);
        names.emplace_back(member.name);
    }
    return names;
}

#pragma once

/// \file
/// Records as programs get them, whatever they are of.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "errors.h"
#include "pgmdev_c_records.h"

/// What values have in common that stand in one column.
struct MEMBER {
    std::string name;
    pgmdev_kind kind = PGMDEV_KIND_TEXT;
    uint32_t bits = 0;
    std::string unit;
    uint32_t base = 10;
};

inline MEMBER member_of_kind(std::string name, pgmdev_kind kind) {
    return {std::move(name), kind, 0, "", 10};
}
inline MEMBER text_member(std::string name) {
    return member_of_kind(std::move(name), PGMDEV_KIND_TEXT);
}
inline MEMBER flag_member(std::string name) {
    return {std::move(name), PGMDEV_KIND_BOOL, 1, "", 10};
}
inline MEMBER number_member(std::string name, uint32_t bits = 32, std::string unit = "", uint32_t base = 10) {
    return {std::move(name), PGMDEV_KIND_NUMBER, bits, std::move(unit), base};
}

struct DATUM {
    pgmdev_kind kind = PGMDEV_KIND_NONE;
    uint64_t number = 0;
    std::string text;
};

inline DATUM text_value(std::string text) {
    return {PGMDEV_KIND_TEXT, 0, std::move(text)};
}
inline DATUM flag_value(bool flag) {
    return {PGMDEV_KIND_BOOL, flag ? 1U : 0U, ""};
}
inline DATUM number_value(uint64_t number) {
    return {PGMDEV_KIND_NUMBER, number, ""};
}
template <class NUMBER>
DATUM number_value(const std::optional<NUMBER>& number) {
    return number ? number_value(uint64_t{*number}) : DATUM();
}

/// The value as the library hands it out; it borrows the text.
pgmdev_value borrowed(const DATUM& value);

struct pgmdev_records {
    std::vector<MEMBER> members;
    std::vector<DATUM> values;  ///< record by record, those of each in the order of the members

    explicit pgmdev_records(std::vector<MEMBER> of_members) : members(std::move(of_members)) {}

    std::size_t count() const { return values.size() / members.size(); }
    void add(std::vector<DATUM> record);
    const DATUM& at(std::size_t record, std::size_t member) const;

    /// The index of a member; its count when there is none of that name.
    std::size_t index_of(std::string_view name) const;

    /// The same for a member that must be there.
    std::size_t required_index_of(const std::string& name) const;
};

/// A "name" each.
pgmdev_records names_list(const std::vector<std::string>& names);

/// Lists of an answer.
struct pgmdev_answer {
    struct LIST {
        std::string name;
        pgmdev_records records;
    };
    std::vector<LIST> lists;

    pgmdev_records& add(std::string name, std::vector<MEMBER> members);

    /// A list of texts, "text" each.
    void add_texts(std::string name, const std::vector<std::string>& texts);
};

/// A text or bytes.
struct pgmdev_string {
    std::string bytes;
};

/// Hands a text over to the caller by the emptied place. "" is not found.
pgmdev_status give_text(pgmdev_string** place, std::string text);

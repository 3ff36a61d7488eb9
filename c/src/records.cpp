#include "records.h"

#include <algorithm>
#include <iterator>

#include "gen.h"
#include "near_names.h"
#include "pgmdev_version.h"
#include "structures.h"
#include "ver.h"
#include "wildcard.h"

namespace {

constexpr pgmdev_value NO_VALUE{PGMDEV_KIND_NONE, 0, 0, "", 0};

bool is_text(const DATUM& value) {
    return value.kind == PGMDEV_KIND_TEXT || value.kind == PGMDEV_KIND_ENUMERATOR;
}

/// The first record, from `first` on, whose text in that member is one that is wanted.
template <class IS_WANTED>
pgmdev_status find_text(const pgmdev_records* records, size_t first, const char* member, const char* text,
                        size_t* record, pgmdev_error** error, IS_WANTED is_wanted) {
    return guarded(error, [&]() -> pgmdev_status {
        emptied(record, PGMDEV_NO_RECORD);
        const std::size_t index = opened(records).required_index_of(required_text(member));
        const std::string wanted = required_text(text);
        for (std::size_t i = first; i < records->count(); ++i) {
            const DATUM& value = records->at(i, index);
            if (is_text(value) && is_wanted(value.text, wanted)) {
                *record = i;
                return PGMDEV_STATUS_OK;
            }
        }
        return PGMDEV_STATUS_NOT_FOUND;
    });
}

}  // namespace

void pgmdev_records::add(std::vector<DATUM> record) {
    if (record.size() != members.size()) {
        throw std::logic_error("a record has not as many values as there are members");
    }
    values.insert(values.end(), std::make_move_iterator(record.begin()), std::make_move_iterator(record.end()));
}

const DATUM& pgmdev_records::at(std::size_t record, std::size_t member) const {
    require_argument(record < count(), "there is no record of that index");
    require_argument(member < members.size(), "there is no member of that index");
    return values[record * members.size() + member];
}

std::size_t pgmdev_records::index_of(std::string_view name) const {
    const auto found =
        std::find_if(members.begin(), members.end(), [name](const MEMBER& member) { return member.name == name; });
    return static_cast<std::size_t>(found - members.begin());
}

std::size_t pgmdev_records::required_index_of(const std::string& name) const {
    const std::size_t index = index_of(name);
    require_argument(index < members.size(), "there is no member of that name");
    return index;
}

pgmdev_records& pgmdev_answer::add(std::string name, std::vector<MEMBER> members) {
    return lists.emplace_back(LIST{std::move(name), pgmdev_records(std::move(members))}).records;
}

void pgmdev_answer::add_texts(std::string name, const std::vector<std::string>& texts) {
    pgmdev_records& list = add(std::move(name), {text_member("text")});
    for (const std::string& text : texts) {
        list.add({text_value(text)});
    }
}

pgmdev_records names_list(const std::vector<std::string>& names) {
    pgmdev_records list({text_member("name")});
    for (const std::string& name : names) {
        list.add({text_value(name)});
    }
    return list;
}

pgmdev_value borrowed(const DATUM& value) {
    return {value.kind, 0, value.number, value.text.c_str(), value.text.size()};
}

pgmdev_status give_text(pgmdev_string** place, std::string text) {
    if (text.empty()) {
        return PGMDEV_STATUS_NOT_FOUND;
    }
    *place = new pgmdev_string{std::move(text)};
    return PGMDEV_STATUS_OK;
}

size_t pgmdev_records_count(const pgmdev_records* records) {
    return records != nullptr ? records->count() : 0;
}

size_t pgmdev_records_member_count(const pgmdev_records* records) {
    return records != nullptr ? records->members.size() : 0;
}

pgmdev_status pgmdev_records_member(const pgmdev_records* records, size_t index, pgmdev_member* member,
                                    pgmdev_error** error) {
    return guarded(error, [&]() -> pgmdev_status {
        hand_out(member, {});
        require_argument(index < opened(records).members.size(), "there is no member of that index");
        const MEMBER& found = records->members[index];
        hand_out(member, {0, found.name.c_str(), found.kind, found.bits, found.base, found.unit.c_str()});
        return PGMDEV_STATUS_OK;
    });
}

pgmdev_status pgmdev_records_find_member(const pgmdev_records* records, const char* name, size_t* index,
                                         pgmdev_error** error) {
    return guarded(error, [&]() -> pgmdev_status {
        emptied(index);
        const std::size_t found = opened(records).index_of(required_text(name));
        if (found == records->members.size()) {
            return PGMDEV_STATUS_NOT_FOUND;
        }
        *index = found;
        return PGMDEV_STATUS_OK;
    });
}

pgmdev_status pgmdev_records_value(const pgmdev_records* records, size_t record, size_t member, pgmdev_value* value,
                                   pgmdev_error** error) {
    return guarded(error, [&]() -> pgmdev_status {
        emptied(value, NO_VALUE);
        *value = borrowed(opened(records).at(record, member));
        return PGMDEV_STATUS_OK;
    });
}

pgmdev_status pgmdev_records_values(const pgmdev_records* records, size_t record, pgmdev_value* values, size_t count,
                                    pgmdev_error** error) {
    return guarded(error, [&]() -> pgmdev_status {
        require_argument(values != nullptr, "there is nothing that could receive the result");
        require_argument(count == opened(records).members.size(), "count is not that of the members");
        std::fill_n(values, count, NO_VALUE);
        for (std::size_t i = 0; i < count; ++i) {
            values[i] = borrowed(records->at(record, i));
        }
        return PGMDEV_STATUS_OK;
    });
}

pgmdev_status pgmdev_records_number(const pgmdev_records* records, size_t record, const char* member, uint64_t* number,
                                    pgmdev_error** error) {
    return guarded(error, [&]() -> pgmdev_status {
        emptied(number);
        const DATUM& value = opened(records).at(record, records->required_index_of(required_text(member)));
        if (value.kind == PGMDEV_KIND_NONE) {
            return PGMDEV_STATUS_NOT_FOUND;
        }
        require_argument(
            value.kind == PGMDEV_KIND_BOOL || value.kind == PGMDEV_KIND_NUMBER || value.kind == PGMDEV_KIND_ENUMERATOR,
            "the value is no number");
        *number = value.number;
        return PGMDEV_STATUS_OK;
    });
}

pgmdev_status pgmdev_records_text(const pgmdev_records* records, size_t record, const char* member, const char** text,
                                  pgmdev_error** error) {
    return guarded(error, [&]() -> pgmdev_status {
        emptied(text);
        const DATUM& value = opened(records).at(record, records->required_index_of(required_text(member)));
        if (value.kind == PGMDEV_KIND_NONE) {
            return PGMDEV_STATUS_NOT_FOUND;
        }
        require_argument(is_text(value), "the value is no text");
        *text = value.text.c_str();
        return PGMDEV_STATUS_OK;
    });
}

pgmdev_status pgmdev_records_find(const pgmdev_records* records, size_t first, const char* member, const char* text,
                                  size_t* record, pgmdev_error** error) {
    return find_text(
        records, first, member, text, record, error,
        [](const std::string& found, const std::string& wanted) { return gen_stricmp(found, wanted) == 0; });
}

pgmdev_status pgmdev_records_find_fitting(const pgmdev_records* records, size_t first, const char* member,
                                          const char* pattern, size_t* record, pgmdev_error** error) {
    return find_text(records, first, member, pattern, record, error,
                     [](const std::string& found, const std::string& wanted) { return fits_pattern(found, wanted); });
}

pgmdev_status pgmdev_records_suggestions(const pgmdev_records* records, const char* member, const char* text,
                                         pgmdev_records** suggestions, pgmdev_error** error) {
    return guarded(error, [&]() -> pgmdev_status {
        emptied(suggestions);
        const std::size_t index = opened(records).required_index_of(required_text(member));
        const std::string unknown = required_text(text);
        NEAR_NAMES near(unknown);
        for (std::size_t i = 0; i < records->count(); ++i) {
            const DATUM& value = records->at(i, index);
            if (is_text(value)) {
                near.consider(value.text);
            }
        }
        *suggestions = new pgmdev_records(names_list(near.best([](const std::string&) { return true; })));
        return PGMDEV_STATUS_OK;
    });
}

void pgmdev_records_free(pgmdev_records* records) {
    delete records;
}

size_t pgmdev_answer_list_count(const pgmdev_answer* answer) {
    return answer != nullptr ? answer->lists.size() : 0;
}

const char* pgmdev_answer_list_name(const pgmdev_answer* answer, size_t index) {
    return index < pgmdev_answer_list_count(answer) ? answer->lists[index].name.c_str() : nullptr;
}

const pgmdev_records* pgmdev_answer_list(const pgmdev_answer* answer, const char* name) {
    if (answer == nullptr || name == nullptr) {
        return nullptr;
    }
    const auto found = std::find_if(answer->lists.begin(), answer->lists.end(),
                                    [name](const pgmdev_answer::LIST& list) { return list.name == name; });
    return found != answer->lists.end() ? &found->records : nullptr;
}

void pgmdev_answer_free(pgmdev_answer* answer) {
    delete answer;
}

pgmdev_status pgmdev_versions(pgmdev_records** versions, pgmdev_error** error) {
    return guarded(error, [&]() -> pgmdev_status {
        emptied(versions);
        pgmdev_records found({text_member("library"), text_member("host"), text_member("catalog"),
                              text_member("flash_stamp"), text_member("dev_info_stamp"),
                              number_member("body_version")});
        found.add({text_value(PGMDEV_VERSION::library()), text_value(ver_get_version()),
                   text_value(PGMDEV_VERSION::catalog()), text_value(PGMDEV_VERSION::flash_stamp()),
                   text_value(PGMDEV_VERSION::dev_info_stamp()), number_value(PGMDEV_VERSION::body_version())});
        *versions = new pgmdev_records(std::move(found));
        return PGMDEV_STATUS_OK;
    });
}

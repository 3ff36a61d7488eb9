#include "tables/table_diff.h"

#include "terminal/printable.h"
#include "terminal/schema.h"

namespace {

using ROWS = std::vector<std::pair<std::string, std::size_t>>;

JSON rows_json(const ROWS& rows) {
    JSON array = JSON::array();
    for (const auto& [key, row] : rows) {
        array.push_back({{"key", key}, {"index", row}});
    }
    return array;
}

JSON changed_json(const std::vector<ROW_CHANGE>& changes) {
    JSON array = JSON::array();
    for (const ROW_CHANGE& change : changes) {
        JSON members = JSON::array();
        for (const MEMBER_CHANGE& member : change.members) {
            members.push_back({{"member", member.member},
                               {"unit", member.unit.empty() ? JSON() : JSON(member.unit)},
                               {"before", member.before},
                               {"after", member.after}});
        }
        array.push_back({{"key", change.key}, {"members", members}});
    }
    return array;
}

JSON moved_json(const std::vector<ROW_CHANGE>& changes) {
    JSON array = JSON::array();
    for (const ROW_CHANGE& change : changes) {
        array.push_back({{"key", change.key}, {"before", change.before}, {"after", change.after}});
    }
    return array;
}

void print_rows(const char* what, const ROWS& rows) {
    for (const auto& [key, row] : rows) {
        fmt::print("{:<8} {} (record {})\n", what, printable(key), row);
    }
}

std::string shown(const std::string& text) {
    return text.empty() ? "nothing" : printable(text);
}

}  // namespace

void add_difference(JSON& answer, const TABLE_DIFFERENCE& difference) {
    answer["added"] = rows_json(difference.added);
    answer["removed"] = rows_json(difference.removed);
    answer["changed"] = changed_json(difference.changed);
    answer["moved"] = moved_json(difference.moved);
    JSON indexes = JSON::array();
    for (const auto& [table, entries] : difference.indexes) {
        indexes.push_back({{"table", table}, {"entries", entries}});
    }
    answer["index_tables"] = indexes;
}

JSON difference_schema() {
    const JSON row = object_schema({{"key", text_schema()}, {"index", number_schema()}});
    const JSON value = any_of({text_schema(), flag_schema(), or_null(number_schema())});
    const JSON member = object_schema(
        {{"member", text_schema()}, {"unit", or_null(text_schema())}, {"before", value}, {"after", value}});
    const JSON changed = object_schema({{"key", text_schema()}, {"members", array_schema(member)}});
    const JSON moved = object_schema({{"key", text_schema()}, {"before", number_schema()}, {"after", number_schema()}});
    const JSON index_table = object_schema({{"table", text_schema()}, {"entries", number_schema()}});
    return object_schema({{"query", array_schema(text_schema())},
                          {"same", flag_schema()},
                          {"added", array_schema(row)},
                          {"removed", array_schema(row)},
                          {"changed", array_schema(changed)},
                          {"moved", array_schema(moved)},
                          {"index_tables", array_schema(index_table)}});
}

void print_difference(const TABLE_DIFFERENCE& difference) {
    print_rows("removed", difference.removed);
    print_rows("added", difference.added);
    for (const ROW_CHANGE& change : difference.changed) {
        fmt::print("changed  {}\n", printable(change.key));
        for (const MEMBER_CHANGE& member : change.members) {
            fmt::print("           {}: {} -> {}{}{}\n", member.member, shown(member.before_text),
                       shown(member.after_text), member.unit.empty() ? "" : " ", member.unit);
        }
    }
    for (const ROW_CHANGE& change : difference.moved) {
        fmt::print("moved    {} (record {} -> {})\n", printable(change.key), change.before, change.after);
    }
    for (const auto& [table, entries] : difference.indexes) {
        fmt::print("index    {} table: {} entries differ\n", table, entries);
    }
}

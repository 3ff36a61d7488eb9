#include "tables/table_diff.h"

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

#pragma once

/// \file
/// The verb diff: what differs between two tables, packed databases or source tables.

#include <fmt/core.h>

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "files/file_bytes.h"
#include "files/origins.h"
#include "files/source.h"
#include "tables/fault_output.h"
#include "tables/row_matching.h"
#include "tables/source_hints.h"
#include "tables/stream_copy.h"
#include "terminal/command_line.h"
#include "terminal/failure.h"
#include "terminal/json.h"
#include "terminal/text_table.h"

// KIND says which table it is, further:
//   MEMBERS                      the members of its records
//   key(record), match_key(record)  what a row is about: for people, and by which rows belong together
//   cell(member, record)         a value as text
//   values(record)               all of them, as an object in the order of the members
//   index_tables(table)          the index tables of a database, each with its name; none without

/// Reads a packed database or a source table, told apart by how they begin. A source table may have faults in its rows,
/// which are shown; one in its format ends the command.
template <class KIND>
typename KIND::TABLE read_any_table(const ARGUMENTS& given, const char* argument) {
    const std::string& file = given.text(argument);
    const STREAM_COPY input(file, argument);
    if (is_packed_database(input.path())) {
        return input.told_of([&] { return KIND::read(input.path(), argument); });
    }
    require_readable_table(input.path(), argument);
    auto table = KIND::TABLE::from_source(input.path());
    if (table.has_faults()) {
        print_faults(table.faults(), file, KIND::TABLE::describe);
        print_hints(file, hints_at_causes(input.path(), KIND::NOUN, table.faults()));
    }
    if (table.records().empty()) {
        throw COMMAND_FAILURE({FAILURE_CODE::TABLE_REFUSED,
                               "neither a packed database nor a source table without faults in its format",
                               file,
                               argument_place(file, argument).tried,
                               fmt::format("see \"pgmdev {} check\"", KIND::NOUN),
                               {}});
    }
    return table;
}

template <class KIND>
std::vector<ROW_TEXTS> row_texts(const typename KIND::TABLE& table) {
    std::vector<ROW_TEXTS> rows;
    rows.reserve(table.records().size());
    for (const auto& record : table.records()) {
        ROW_TEXTS row{KIND::match_key(record), {}};
        for (const auto& member : KIND::MEMBERS) {
            row.whole += KIND::cell(member, record) + '\n';
        }
        rows.push_back(std::move(row));
    }
    return rows;
}

/// One member that differs.
struct MEMBER_CHANGE {
    std::string_view member;
    std::string_view unit;
    JSON before;
    JSON after;
    std::string before_text;
    std::string after_text;
};

/// A row that differs, or stands elsewhere.
struct ROW_CHANGE {
    std::string key;
    std::size_t before;
    std::size_t after;
    std::vector<MEMBER_CHANGE> members;
};

struct TABLE_DIFFERENCE {
    std::vector<ROW_CHANGE> changed;
    std::vector<ROW_CHANGE> moved;
    std::vector<std::pair<std::string, std::size_t>> added;    ///< key and row
    std::vector<std::pair<std::string, std::size_t>> removed;  ///< likewise
    std::vector<std::pair<std::string, std::size_t>> indexes;  ///< index table, and how many of its entries differ

    bool none() const {
        return changed.empty() && moved.empty() && added.empty() && removed.empty() && indexes.empty();
    }
};

/// As an object of an answer.
void add_difference(JSON& answer, const TABLE_DIFFERENCE& difference);
/// The schema of the answer.
JSON difference_schema();
/// As lines for people.
void print_difference(const TABLE_DIFFERENCE& difference);

template <class KIND, class RECORD>
std::vector<MEMBER_CHANGE> member_changes(const RECORD& before, const RECORD& after) {
    const JSON values_before = KIND::values(before);
    const JSON values_after = KIND::values(after);
    std::vector<MEMBER_CHANGE> changes;
    for (std::size_t i = 0; i < KIND::MEMBERS.size(); ++i) {
        const auto& member = KIND::MEMBERS[i];
        std::string text_before = KIND::cell(member, before);
        std::string text_after = KIND::cell(member, after);
        if (text_before != text_after) {
            changes.push_back({member.name, member.unit, values_before.members().values[i],
                               values_after.members().values[i], std::move(text_before), std::move(text_after)});
        }
    }
    return changes;
}

template <class KIND>
TABLE_DIFFERENCE difference_of(const typename KIND::TABLE& before, const typename KIND::TABLE& after) {
    const std::vector<ROW_TEXTS> rows_before = row_texts<KIND>(before);
    const std::vector<ROW_TEXTS> rows_after = row_texts<KIND>(after);
    const ROW_MATCHES matches = match_rows(rows_before, rows_after);
    TABLE_DIFFERENCE difference;
    for (const std::size_t row : matches.removed) {
        difference.removed.emplace_back(KIND::key(before.records()[row]), row);
    }
    for (const std::size_t row : matches.added) {
        difference.added.emplace_back(KIND::key(after.records()[row]), row);
    }
    for (std::size_t i = 0; i < matches.pairs.size(); ++i) {
        const auto [row, other] = matches.pairs[i];
        ROW_CHANGE change{KIND::key(before.records()[row]), row, other, {}};
        if (matches.moved[i]) {
            difference.moved.push_back(change);
        }
        if (before.records()[row] != after.records()[other]) {
            change.members = member_changes<KIND>(before.records()[row], after.records()[other]);
            difference.changed.push_back(std::move(change));
        }
    }
    const auto indexes = KIND::index_tables(before);
    const auto other_indexes = KIND::index_tables(after);
    for (std::size_t i = 0; i < indexes.size(); ++i) {
        const std::vector<DWORD>& entries = indexes[i].second;
        const std::vector<DWORD>& others = other_indexes[i].second;
        std::size_t different = 0;  // a source table has no entries to compare
        for (std::size_t entry = 0; entry < std::min(entries.size(), others.size()); ++entry) {
            different += entries[entry] != others[entry] ? 1U : 0U;
        }
        if (different != 0) {
            difference.indexes.emplace_back(indexes[i].first, different);
        }
    }
    return difference;
}

/// Shows what differs between two tables, and ends with EXIT_NOT_FOUND when something does.
template <class KIND>
void diff_tables(const ARGUMENTS& given, COMMAND& command) {
    const auto before = read_any_table<KIND>(given, "A");
    const auto after = read_any_table<KIND>(given, "B");
    const TABLE_DIFFERENCE difference = difference_of<KIND>(before, after);
    if (!difference.none()) {
        command.result = EXIT_NOT_FOUND;
    }
    if (command.json) {
        JSON query = JSON::array();
        query.push_back(given.text("A"));
        query.push_back(given.text("B"));
        JSON answer{{"query", query}, {"same", difference.none()}};
        add_difference(answer, difference);
        print_json(answer);
        return;
    }
    print_difference(difference);
    fmt::print("{} records, then {}: {}\n", before.records().size(), after.records().size(),
               difference.none()
                   ? "the same"
                   : fmt::format("{} added, {} removed, {} changed, {} moved", difference.added.size(),
                                 difference.removed.size(), difference.changed.size(), difference.moved.size()));
}

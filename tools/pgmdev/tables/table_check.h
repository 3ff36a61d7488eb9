#pragma once

/// \file
/// The verb check: everything that is wrong with a source table, without the warnings that its maintainers accept.

#include <fmt/core.h>

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "files/source.h"
#include "tables/accepted_warnings.h"
#include "tables/fault_output.h"
#include "tables/notes_files.h"
#include "tables/source_hints.h"
#include "tables/table_sizes.h"
#include "tables/table_support.h"
#include "terminal/command_line.h"
#include "terminal/did_you_mean.h"
#include "terminal/json.h"
#include "terminal/standard_error.h"

// KIND says which table it is, further:
//   names_of(member)   what the cells of a member may name; none where they hold no names
//   notes_beside(csv_file, table)   what is wrong with the notes beside the table; none where there are no notes
//   notes_of(csv, csv)              the files of these
//   support_of(csv, records)   what supports the rows, where a list of it stands beside the table
//   support_schema()   the schema of the shares that it gives

/// Adds to faults about unknown names those that may have been meant.
template <class KIND>
void suggest_names(std::vector<PGMDEV_TABLE_FAULT>& faults) {
    for (PGMDEV_TABLE_FAULT& fault : faults) {
        if (fault.severity == PGMDEV_TABLE_FAULT::SEVERITY::FAULT && !fault.row.empty() && !fault.cell.empty()) {
            fault.expected += did_you_mean(nearest(fault.cell, KIND::names_of(fault.member)));
        }
    }
}

/// Takes the warnings that are accepted out of the faults: as an array of objects, each with the reason.
template <class KIND>
JSON take_accepted(std::vector<PGMDEV_TABLE_FAULT>& faults, ACCEPTED_WARNINGS& accepted) {
    JSON taken = JSON::array();
    std::erase_if(faults, [&](const PGMDEV_TABLE_FAULT& fault) {
        const ACCEPTED_WARNING* entry = accept_warning(accepted, fault);
        if (entry != nullptr) {
            JSON object = fault_json(fault, KIND::ROW_KEY);
            object["why"] = entry->why;
            taken.push_back(object);
        }
        return entry != nullptr;
    });
    return taken;
}

/// All that is to be said of a source table and of the files beside it.
template <class KIND>
struct CHECKED_TABLE {
    typename KIND::TABLE table;
    TABLE_SUPPORT support;
    std::vector<PGMDEV_TABLE_FAULT> faults;  ///< of both, but for warnings that are accepted
    ACCEPTED_WARNINGS accepted;
    JSON accepted_faults;
    std::vector<ACCEPTED_WARNING> unused;
    std::vector<NOTES_FAULTS> notes;
    std::vector<std::string> hints;

    bool table_has_faults() const { return table.has_faults() || has_fault(support.faults); }

    bool has_faults() const {
        return table_has_faults() || !accepted.malformed.empty() ||
               std::any_of(notes.begin(), notes.end(), [](const NOTES_FAULTS& each) { return each.has_fault(); });
    }

    bool has_warnings() const {
        return !faults.empty() || !unused.empty() ||
               std::any_of(notes.begin(), notes.end(), [](const NOTES_FAULTS& each) { return !each.faults.empty(); });
    }
};

template <class KIND>
std::vector<std::string> hints_at_faults(const std::string& csv_file, const CHECKED_TABLE<KIND>& checked) {
    std::vector<std::string> hints = hints_at_causes(csv_file, KIND::NOUN, checked.table.faults());
    for (std::string& hint : hints_at_notes(KIND::notes_of(csv_file, csv_file))) {
        hints.push_back(std::move(hint));
    }
    if (std::any_of(checked.faults.begin(), checked.faults.end(), is_of_part_list)) {
        hints.push_back(failure_text(part_list_failure()));
    }
    return hints;
}

template <class KIND>
CHECKED_TABLE<KIND> checked_table(const std::string& csv_file) {
    CHECKED_TABLE<KIND> checked{KIND::TABLE::from_source(csv_file), {}, {}, {}, {}, {}, {}, {}};
    checked.faults = checked.table.faults();
    suggest_names<KIND>(checked.faults);
    checked.support = KIND::support_of(csv_file, checked.table.records());
    checked.faults.insert(checked.faults.end(), checked.support.faults.begin(), checked.support.faults.end());
    checked.accepted = read_accepted_warnings(csv_file);
    checked.accepted_faults = take_accepted<KIND>(checked.faults, checked.accepted);
    checked.hints = hints_at_faults(csv_file, checked);
    if (!checked.table.records().empty()) {  // where the form is broken, not all warnings were looked for
        checked.unused = unused_entries(checked.accepted);
    }
    checked.notes = KIND::notes_beside(csv_file, checked.table);
    return checked;
}

template <class KIND>
JSON checked_json(const CHECKED_TABLE<KIND>& checked) {
    JSON document = sizes_json(checked.table);
    document["faults"] = faults_json(checked.faults, KIND::ROW_KEY);
    document["accepted"] = checked.accepted_faults;
    document["unused"] = unused_json(checked.unused);
    document["hints"] = checked.hints;
    document["notes"] = notes_json(checked.notes);
    if (checked.support.is_there) {
        document["evidence"] = checked.support.shares;
    }
    return document;
}

/// Shows all faults of a source table.
template <class KIND>
void check_table(const ARGUMENTS& given, COMMAND& command) {
    const std::string& csv_file = given.text("CSV");
    require_readable_table(csv_file, "CSV");
    const CHECKED_TABLE<KIND> checked = checked_table<KIND>(csv_file);
    if (checked.has_faults() || (given.has("--strict") && checked.has_warnings())) {
        command.result = EXIT_INTERNAL_ERROR;
    }
    print_faults(checked.faults, csv_file, KIND::TABLE::describe);
    print_leftovers(checked.accepted, checked.unused);
    for (const NOTES_FAULTS& each : checked.notes) {
        print_faults(each.faults, each.file, KIND::TABLE::describe);
    }
    print_hints(csv_file, checked.hints);
    if (command.json) {
        print_json(checked_json(checked));
    } else if (!checked.table_has_faults()) {
        print_sizes(checked.table);
        for (const std::string& line : checked.support.lines) {
            fmt::print("{}\n", line);
        }
    }
}

template <class KIND>
JSON check_schema() {
    const JSON fault = fault_schema(KIND::ROW_KEY);
    JSON accepted = fault;
    accepted["properties"]["why"] = text_schema();
    std::vector<SCHEMA_MEMBER> members = size_members();
    members.push_back({"faults", array_schema(fault)});
    members.push_back({"accepted", array_schema(accepted)});
    members.push_back({"unused", array_schema(unused_schema())});
    members.push_back({"hints", array_schema(text_schema())});
    members.push_back({"notes", notes_schema()});
    members.push_back({"evidence", KIND::support_schema(), false});
    return object_schema(members);
}

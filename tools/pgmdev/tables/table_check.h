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

/// Shows all faults of a source table.
template <class KIND>
void check_table(const ARGUMENTS& given, COMMAND& command) {
    const std::string& csv_file = given.text("CSV");
    require_readable_table(csv_file, "CSV");
    const auto table = KIND::TABLE::from_source(csv_file);
    std::vector<PGMDEV_TABLE_FAULT> faults = table.faults();
    suggest_names<KIND>(faults);
    const TABLE_SUPPORT support = KIND::support_of(csv_file, table.records());
    faults.insert(faults.end(), support.faults.begin(), support.faults.end());
    ACCEPTED_WARNINGS accepted = read_accepted_warnings(csv_file);
    JSON accepted_faults = JSON::array();
    std::erase_if(faults, [&](const PGMDEV_TABLE_FAULT& fault) {
        const ACCEPTED_WARNING* entry = accept_warning(accepted, fault);
        if (entry != nullptr) {
            JSON object = fault_json(fault, KIND::ROW_KEY);
            object["why"] = entry->why;
            accepted_faults.push_back(object);
        }
        return entry != nullptr;
    });
    std::vector<std::string> hints = hints_at_causes(csv_file, KIND::NOUN, table.faults());
    for (std::string& hint : hints_at_notes(KIND::notes_of(csv_file, csv_file))) {
        hints.push_back(std::move(hint));
    }
    if (std::any_of(faults.begin(), faults.end(), is_of_part_list)) {
        hints.push_back(failure_text(part_list_failure()));
    }
    // Where the form is broken, not all warnings were looked for.
    const std::vector<ACCEPTED_WARNING> unused =
        table.records().empty() ? std::vector<ACCEPTED_WARNING>() : unused_entries(accepted);
    const std::vector<NOTES_FAULTS> notes = KIND::notes_beside(csv_file, table);
    const bool notes_have_faults =
        std::any_of(notes.begin(), notes.end(), [](const NOTES_FAULTS& each) { return each.has_fault(); });
    const bool remarkable =
        !faults.empty() || !unused.empty() ||
        std::any_of(notes.begin(), notes.end(), [](const NOTES_FAULTS& each) { return !each.faults.empty(); });
    if (table.has_faults() || has_fault(support.faults) || notes_have_faults || !accepted.malformed.empty() ||
        (given.has("--strict") && remarkable)) {
        command.result = EXIT_INTERNAL_ERROR;
    }

    print_faults(faults, csv_file, KIND::TABLE::describe);
    print_leftovers(accepted, unused);
    for (const NOTES_FAULTS& each : notes) {
        print_faults(each.faults, each.file, KIND::TABLE::describe);
    }
    print_hints(csv_file, hints);
    if (command.json) {
        JSON document = sizes_json(table);
        document["faults"] = faults_json(faults, KIND::ROW_KEY);
        document["accepted"] = accepted_faults;
        document["unused"] = unused_json(unused);
        document["hints"] = hints;
        document["notes"] = notes_json(notes);
        if (support.is_there) {
            document["evidence"] = support.shares;
        }
        print_json(document);
    } else if (!table.has_faults() && !has_fault(support.faults)) {
        print_sizes(table);
        for (const std::string& line : support.lines) {
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

#pragma once

/// \file
/// The verbs that a noun with a source table has: check, compile and dump.

#include <fmt/core.h>

#include <stdexcept>
#include <string>
#include <vector>

#include "fio.h"
#include "tables/fault_output.h"
#include "terminal/command_line.h"
#include "terminal/json.h"
#include "terminal/listing.h"
#include "terminal/schema.h"

// KIND says which table it is:
//   TABLE                                  the library's class for it
//   NOUN, SOURCE_TABLE, DATABASE, DUMPED   what help says
//   ROW_KEY                                the key under which a fault in JSON tells its row
//   compile(csv, pcf)                      compiles
//   read(pcf)                              reads a database for people
//   row()                                  the schema of its records
//   print(table, given, command)           shows the records of a database

template <class TABLE>
JSON sizes_json(const TABLE& table) {
    return {{"records", table.records().size()}, {"payload_size", table.payload_size()}};
}

/// The members of sizes_json.
inline std::vector<SCHEMA_MEMBER> size_members() {
    return {{"records", number_schema()}, {"payload_size", number_schema()}};
}

template <class TABLE>
void print_sizes(const TABLE& table) {
    fmt::print("{} records, {} bytes of payload\n", table.records().size(), table.payload_size());
}

/// Shows all faults of a source table.
template <class KIND>
void check_table(const ARGUMENTS& given, COMMAND& command) {
    const std::string& csv_file = given.text("CSV");
    const auto table = KIND::TABLE::from_source(csv_file);
    if (table.has_faults()) {
        command.result = EXIT_INTERNAL_ERROR;
    }
    print_faults(table.faults(), csv_file, KIND::TABLE::describe);
    if (command.json) {
        JSON document = sizes_json(table);
        document["faults"] = faults_json(table.faults(), KIND::ROW_KEY);
        print_json(document);
    } else if (!table.has_faults()) {
        print_sizes(table);
    }
}

template <class KIND>
JSON check_schema() {
    std::vector<SCHEMA_MEMBER> members = size_members();
    members.push_back({"faults", array_schema(fault_schema(KIND::ROW_KEY))});
    return object_schema(members);
}

/// Checks and compiles a source table, reads the result back, compares, and only then replaces the output.
template <class KIND>
void compile_table(const ARGUMENTS& given, const COMMAND& command) {
    const std::string& csv_file = given.text("CSV");
    const std::string& pcf_file = given.text("PCF");
    const auto table = KIND::TABLE::from_source(csv_file);
    FIO_REPLACEMENT output(pcf_file);
    if (table.has_faults()) {
        print_faults(table.faults(), csv_file, KIND::TABLE::describe);
    }
    if (table.records().empty()) {
        // The format is broken: the compiler itself says which condition stops it.
        KIND::compile(csv_file, output.temporary());
    }
    if (table.has_faults()) {
        throw std::runtime_error(csv_file + " has faults: " + pcf_file + " is left as it was");
    }
    KIND::compile(csv_file, output.temporary());
    const auto read_back = KIND::TABLE::from_database(output.temporary());
    if (read_back.records() != table.records() || read_back.payload_size() != table.payload_size()) {
        throw std::runtime_error("what was compiled from " + csv_file + " reads back differently");
    }
    if (!output.commit()) {
        throw std::runtime_error(pcf_file + " cannot be replaced");
    }
    if (command.json) {
        print_json(sizes_json(table));
    } else {
        print_sizes(table);
    }
}

template <class TABLE>
void print_source_table(const TABLE& table) {
    std::string obstacle;
    const std::string text = table.source_text(obstacle);
    if (text.empty()) {
        throw std::runtime_error(obstacle);
    }
    fmt::print("{}", text);
}

/// Shows the records of a packed database, whole or as a source table.
template <class KIND>
void dump_table(const ARGUMENTS& given, const COMMAND& command) {
    const auto table = KIND::read(given.text("PCF"));
    if (given.has("--csv") && given.has("--fields")) {
        throw USAGE_ERROR("expected one of --csv and --fields: a source table has all columns");
    }
    if (given.has("--csv")) {
        print_source_table(table);
    } else {
        KIND::print(table, given, command);
    }
}

/// `verbs`, and the three behind them.
template <class KIND>
std::vector<VERB> with_table_verbs(std::vector<VERB> verbs) {
    const std::string noun = std::string("pgmdev ") + KIND::NOUN;
    verbs.push_back(VERB("check", "Find everything that is wrong with a source table",
                         fmt::format("{} check {}", noun, KIND::SOURCE_TABLE), check_table<KIND>)
                        .takes({"CSV", "Source table"})
                        .answers(check_schema<KIND>));
    verbs.push_back(VERB("compile", "Compile a source table into a packed database",
                         fmt::format("{} compile {} {}", noun, KIND::SOURCE_TABLE, KIND::DATABASE), compile_table<KIND>)
                        .takes({"CSV", "Source table"})
                        .takes({"PCF", "Packed database; replaced only when all has succeeded"})
                        .answers([] { return object_schema(size_members()); }));
    const VERB dump("dump", KIND::DUMPED, fmt::format("{} dump --csv {}", noun, KIND::DATABASE), dump_table<KIND>);
    verbs.push_back(with_field_option(dump, KIND::row)
                        .takes({"PCF", "Packed database"})
                        .takes({"--csv", "As a source table that compiles to the same payload", ARGUMENT::FLAG}));
    return verbs;
}

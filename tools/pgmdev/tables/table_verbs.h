#pragma once

/// \file
/// The verbs that a noun with a source table has: check, compile, dump, diff and verify.

#include <fmt/core.h>

#include <optional>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "files/database.h"
#include "files/file_bytes.h"
#include "files/inspection.h"
#include "files/output.h"
#include "files/source.h"
#include "fio.h"
#include "tables/annotate.h"
#include "tables/fault_output.h"
#include "tables/info_file.h"
#include "tables/notes_files.h"
#include "tables/table_check.h"
#include "tables/table_diff.h"
#include "tables/table_sizes.h"
#include "tables/table_verify.h"
#include "terminal/command_line.h"
#include "terminal/json.h"
#include "terminal/listing.h"
#include "terminal/printable.h"
#include "terminal/schema.h"
#include "terminal/screen.h"
#include "text_lines.h"

// KIND says which table it is:
//   TABLE                                  the library's class for it
//   NOUN, SOURCE_TABLE, DATABASE, DUMPED   what help says
//   ROW_KEY                                the key under which a fault in JSON tells its row
//   DATABASE_FORMAT                        what tells its databases apart
//   NEEDS_PART_LIST                        whether compiling reads the part list
//   compile(csv, pcf)                      compiles
//   read(pcf, argument)                    reads a database, which the argument has named
//   row()                                  the schema of its records
//   print(table, given, command)           shows the records of a database
//   notes_of(csv, pcf)                     the notes beside the table, and what they become beside the database

/// Compiles into the output's temporary file. What the compiler reports is a failure.
template <class KIND>
void compile_source(const std::string& csv_file, const OUTPUT_FILE& output) try {
    forget_system_reason();
    KIND::compile(csv_file, output.temporary());
} catch (const MSG_INTERNAL_ERROR_EXCEPTION& error) {
    throw compile_failure(csv_file, KIND::NEEDS_PART_LIST, output, error.report());
}

/// Gives the text beside a database that is in its place its lasting form. Where that cannot be done, the text tells of
/// the one that was replaced, too: that is no failure, and fits the new one as well.
inline void settle_info(OUTPUT_FILE& lasting) noexcept try {
    try {
        lasting.commit();
    } catch (const COMMAND_FAILURE& failure) {
        FAILURE told = failure.failure();
        told.advice = "the database is in its place, and the text that is there fits it";
        warn_of(told);
    }
} catch (const std::exception&) {
    warn_without_memory("the database is in its place, and the text beside it, which could not be replaced, fits it");
}

/// The digest of the database that is going to be replaced; "" where there is none. One that cannot be read is only replaced
/// where the user insists: what became of the text beside it could not be told.
inline std::string replaced_digest(const std::string& pcf_file, bool force) {
    if (inspect_file(pcf_file, 0).missing) {
        return "";
    }
    const auto bytes = force ? file_bytes(pcf_file) : std::optional(required_file_bytes(pcf_file));
    return bytes ? sha256_of(*bytes) : "";
}

/// Puts a compiled database, the notes and the text beside it in their places. All is written before anything is replaced,
/// and whenever this is interrupted the text fits the database that is there. The database comes last of what may fail: it
/// is the old one unless this succeeds.
inline void replace_with_companions(OUTPUT_FILE& database, NOTES_COPIES& notes, const std::string& pcf_file,
                                    DATABASE_INFO info, bool force) {
    const auto write = [](OUTPUT_FILE& file, const std::string& text) {
        file.write(std::span(reinterpret_cast<const BYTE*>(text.data()), text.size()));
    };
    const PLACE info_place = argument_place(info_file_of(pcf_file), "PCF");
    OUTPUT_FILE lasting(info_place);
    write(lasting, info_text(info));
    info.replaces_sha256 = replaced_digest(pcf_file, force);
    OUTPUT_FILE passing(info_place);
    write(passing, info_text(info));
    passing.commit();
    try {
        notes.commit();
        database.commit();
    } catch (...) {
        notes.restore();
        throw;
    }
    settle_info(lasting);
}

/// Shows the faults of a source table and of the notes beside it, and refuses it for them.
template <class KIND>
void require_no_faults(const std::string& csv_file, const typename KIND::TABLE& table, const OUTPUT_FILE& output) {
    if (table.has_faults()) {
        print_faults(table.faults(), csv_file, KIND::TABLE::describe);
        print_hints(csv_file, hints_at_causes(csv_file, KIND::NOUN, table.faults()));
    }
    if (table.records().empty() || (KIND::NEEDS_PART_LIST && !part_list_obstacle().empty())) {
        // The format is broken, or a file is missing: the compiler itself says which condition stops it.
        compile_source<KIND>(csv_file, output);
    }
    for (const NOTES_FAULTS& each : KIND::notes_beside(csv_file, table)) {
        if (each.has_fault()) {
            print_faults(each.faults, each.file, KIND::TABLE::describe);
            print_hints(csv_file, hints_at_notes({{each.file, ""}}));
            throw refused_table(each.file, {});
        }
    }
    const auto& faults = table.faults();
    if (std::any_of(faults.begin(), faults.end(), is_of_part_list)) {
        throw COMMAND_FAILURE(part_list_failure());
    }
    if (table.has_faults()) {
        throw refused_table(csv_file, {});
    }
}

/// Checks and compiles a source table, reads the result back, compares, and only then replaces the output.
template <class KIND>
void compile_table(const ARGUMENTS& given, const COMMAND& command) {
    const std::string& csv_file = given.text("CSV");
    const std::string& pcf_file = given.text("PCF");
    if (is_stream(csv_file)) {
        throw unreadable_table(csv_file, "CSV", "it is read more than once, and this is no file", {});
    }
    const auto source = file_bytes(csv_file);  // before the compiler reads it: a later change is another source
    const auto table = KIND::TABLE::from_source(csv_file);
    const PLACE pcf_place = argument_place(pcf_file, "PCF");
    confirm_output(pcf_place, {csv_file}, KIND::DATABASE_FORMAT.name, KIND::DATABASE_FORMAT.magic, given.has("--force"),
                   [](const std::string& input, const std::string& obstacle) {
                       return unreadable_table(input, "CSV", obstacle, {});
                   });
    OUTPUT_FILE output(pcf_place);
    require_no_faults<KIND>(csv_file, table, output);
    compile_source<KIND>(csv_file, output);
    if (!source) {
        throw unreadable_table(csv_file, "CSV", "it could only be read at times", {});
    }
    const auto read_back = KIND::TABLE::from_database(output.temporary());
    if (read_back.records() != table.records() || read_back.payload_size() != table.payload_size()) {
        throw std::runtime_error("what was compiled from " + csv_file + " reads back differently");
    }
    const std::vector<BYTE> compiled = required_file_bytes(output.temporary().fullpath());
    NOTES_COPIES copies(KIND::notes_of(csv_file, pcf_file));
    replace_with_companions(
        output, copies, pcf_file,
        database_info(pcf_file, compiled, csv_file, *source, table.records().size(), table.payload_size()),
        given.has("--force"));
    if (command.json) {
        print_json(sizes_json(table));
    } else {
        print_sizes(table);
    }
}

/// Shows the records as a source table, with its columns aligned where the library aligns them, or without blanks. A file gets
/// every character as it is, so that it compiles to the same bytes; a terminal none that would command it.
template <class TABLE>
void print_source_table(const TABLE& table, bool aligned) {
    std::string obstacle;
    std::string text = table.source_text(obstacle);
    if (text.empty()) {
        throw std::runtime_error(obstacle);
    }
    if (!aligned) {
        std::erase(text, ' ');  // no cell of a source table holds a blank
    }
    if (!output_is_terminal()) {
        fmt::print("{}", text);
        return;
    }
    for_each_line(text, [](std::string_view line) { fmt::print("{}\n", printable(std::string(line))); });
}

/// Shows the records of a packed database, whole or as a source table, or all its bytes.
template <class KIND>
void dump_table(const ARGUMENTS& given, COMMAND& command) {
    if (given.has("--csv") + given.has("--plain-csv") + given.has("--annotate") > 1) {
        throw USAGE_ERROR("expected one of --csv, --plain-csv and --annotate");
    }
    for (const char* form : {"--csv", "--plain-csv", "--annotate"}) {
        if (command.json && given.has(form) && std::string_view(form) != "--annotate") {
            throw USAGE_ERROR(fmt::format("expected one of {} and --json", form));
        }
        if (given.has(form) && given.has("--fields")) {
            throw USAGE_ERROR(fmt::format("expected one of {} and --fields: that form has all columns", form));
        }
    }
    if (given.has("--annotate")) {
        annotate_database(given.text("PCF"), database_bytes<KIND>(given), KIND::schema(), command);
        return;
    }
    const auto table = KIND::read(given.text("PCF"), "PCF");
    if (given.has("--csv") || given.has("--plain-csv")) {
        print_source_table(table, given.has("--csv"));
    } else {
        KIND::print(table, given, command);
    }
}

/// `verbs`, and those of the table behind them.
template <class KIND>
std::vector<VERB> with_table_verbs(std::vector<VERB> verbs) {
    const std::string noun = std::string("pgmdev ") + KIND::NOUN;
    verbs.push_back(VERB("check", "Find everything that is wrong with a source table",
                         fmt::format("{} check {}", noun, KIND::SOURCE_TABLE), check_table<KIND>)
                        .takes({"--strict", "Refuse warnings, too", ARGUMENT::FLAG})
                        .takes({"CSV", "Source table"})
                        .tells("Warnings that CSV.accepted lists, as lines ROW MEMBER TEXT # WHY, are not shown.\n")
                        .answers(check_schema<KIND>));
    verbs.push_back(VERB("compile", "Compile a source table into a packed database",
                         fmt::format("{} compile {} {}", noun, KIND::SOURCE_TABLE, KIND::DATABASE), compile_table<KIND>)
                        .takes({"CSV", "Source table"})
                        .takes({"PCF", "Packed database; replaced only when all has succeeded"})
                        .takes({"--force", "Replace a file that is no such database, too", ARGUMENT::FLAG})
                        .answers([] { return object_schema(size_members()); }));
    VERB dump("dump", KIND::DUMPED, fmt::format("{} dump --csv {}", noun, KIND::DATABASE), dump_table<KIND>);
    verbs.push_back(
        with_field_option(std::move(dump), KIND::row)
            .takes({"PCF", "Packed database"})
            .takes({"--csv", "As a source table that compiles to the same payload", ARGUMENT::FLAG})
            .takes({"--plain-csv", "Likewise, without blanks: for tools that compare lines", ARGUMENT::FLAG})
            .takes({"--annotate", "All bytes, with offset, tag, member and value", ARGUMENT::FLAG})
            .answers([] {
                return any_of({list_schema(KIND::row()), annotation_schema()});
            }));
    verbs.push_back(VERB("diff", "What differs between two tables",
                         fmt::format("{} diff {} {}", noun, KIND::DATABASE, KIND::SOURCE_TABLE), diff_tables<KIND>)
                        .takes({"A", "Packed database or source table"})
                        .takes({"B", "Another one"})
                        .tells("Ends with 0 when they are the same, with 1 when they differ.\n")
                        .answers(difference_schema));
    verbs.push_back(VERB("verify", "Whether a packed database is sound, and what it was compiled from",
                         fmt::format("{} verify {} {}", noun, KIND::DATABASE, KIND::SOURCE_TABLE), verify_table<KIND>)
                        .takes({"PCF", "Packed database"})
                        .takes({"CSV", "Source table that it should have been compiled from", ARGUMENT::OPTIONAL_TEXT})
                        .answers(verification_schema));
    return verbs;
}

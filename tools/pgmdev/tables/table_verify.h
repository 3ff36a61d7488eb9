#pragma once

/// \file
/// The verb verify: whether a packed database is sound, byte by byte, and which table it comes from.

#include <fmt/core.h>

#include <span>
#include <string>
#include <utility>
#include <vector>

#include "cfg.h"
#include "files/database.h"
#include "files/file_bytes.h"
#include "files/output.h"
#include "files/scratch_directory.h"
#include "files/source.h"
#include "tables/fault_output.h"
#include "tables/source_hints.h"
#include "tables/stream_copy.h"
#include "tables/verify_output.h"
#include "terminal/command_line.h"

// KIND says which table it is, further:
//   DATABASE_FORMAT         what tells its databases apart
//   schema()                what one must know to read a database of it
//   key_faults(records)     what is wrong with the records as a whole: default rows, keys
//   NEEDS_PART_LIST         whether compiling reads the part list
//   value_faults(records)   values that have no name where a name is needed

/// The bytes of the database that PCF names. One that cannot be read throws COMMAND_FAILURE.
template <class KIND>
std::vector<BYTE> database_bytes(const ARGUMENTS& given) {
    const std::string& pcf_file = given.text("PCF");
    auto bytes = file_bytes(pcf_file);
    if (!bytes) {
        throw database_failure(KIND::DATABASE_FORMAT, argument_place(pcf_file, "PCF"), {});
    }
    return std::move(*bytes);
}

/// Whether a source table without faults compiles to the payload of the database. It is compiled in `scratch`, where the
/// messages that compiling sends end up, too.
template <class KIND>
bool compiles_to_payload(const std::string& csv_file, const SCRATCH_DIRECTORY& scratch,
                         const VERIFICATION& verification) {
    const std::string compiled = scratch.path("compiled.pcf");
    cfg_set_value("TESSARY_OUTBOX_DIR", scratch.path("outbox"));
    KIND::compile(csv_file, compiled);
    return open_packed_file(required_file_bytes(compiled), KIND::schema()).payload == verification.payload;
}

/// Whether the records, written as a source table, compile to the same bytes. Values that no table may hold, and index
/// tables that are not those of the records, are found so: readers take them as they are.
template <class KIND>
void verify_own_table(const typename KIND::TABLE& table, VERIFICATION& verification) {
    const char* const CHECK = "own table";
    if (KIND::NEEDS_PART_LIST && !part_list_obstacle().empty()) {
        verification.skip(CHECK, "the part list cannot be read");
        return;
    }
    std::string obstacle;
    const std::string text = table.source_text(obstacle);
    if (text.empty()) {
        verification.add(CHECK, false, "no source table holds its records: " + obstacle);
        return;
    }
    const SCRATCH_DIRECTORY scratch;
    const std::string csv_file = scratch.path("dump.csv");
    OUTPUT_FILE output({csv_file, {}});
    output.write(std::span(reinterpret_cast<const BYTE*>(text.data()), text.size()));
    output.commit();
    const auto read_back = KIND::TABLE::from_source(csv_file);
    std::vector<std::string> faults;
    for (const PGMDEV_TABLE_FAULT& fault : read_back.faults()) {
        if (fault.severity == PGMDEV_TABLE_FAULT::SEVERITY::FAULT) {
            faults.push_back(KIND::TABLE::describe(fault, "dump"));
        }
    }
    if (!faults.empty()) {
        constexpr std::size_t MOST_SHOWN = 5;
        if (faults.size() > MOST_SHOWN) {
            faults[MOST_SHOWN] = fmt::format("{} more", faults.size() - MOST_SHOWN);
            faults.resize(MOST_SHOWN + 1);
        }
        verification.add(CHECK, faults, "");
        return;
    }
    const bool same = compiles_to_payload<KIND>(csv_file, scratch, verification);
    verification.add(CHECK, same, same ? "compiles to the same payload" : "compiles to another payload");
}

/// Whether the source table compiles to the payload of the database.
template <class KIND>
void verify_source(const std::string& csv_file, VERIFICATION& verification) {
    verification.source = csv_file;
    const STREAM_COPY input(csv_file, "CSV");  // it is read more than once
    require_readable_table(input.path(), "CSV");
    const auto table = KIND::TABLE::from_source(input.path());
    if (table.has_faults()) {
        print_faults(table.faults(), csv_file, KIND::TABLE::describe);
        print_hints(csv_file, hints_at_causes(input.path(), KIND::NOUN, table.faults()));
        verification.add("source", false, csv_file + " has faults");
        return;
    }
    const bool same = compiles_to_payload<KIND>(input.path(), SCRATCH_DIRECTORY(), verification);
    verification.add("source", same,
                     csv_file + (same ? " compiles to the same payload" : " compiles to another payload"));
}

template <class KIND>
void verify_table(const ARGUMENTS& given, COMMAND& command) {
    const std::string& pcf_file = given.text("PCF");
    VERIFICATION verification = verify_structure(pcf_file, database_bytes<KIND>(given), KIND::schema());
    if (verification.sound()) {
        const auto table = KIND::TABLE::from_database(pcf_file);
        verification.add("default rows", KIND::key_faults(table.records()), KIND::GOOD_KEYS);
        verification.add("values", KIND::value_faults(table.records()), KIND::GOOD_VALUES);
        if (verification.sound()) {
            verify_own_table<KIND>(table, verification);
        } else {
            verification.skip("own table", "its records are no table");
        }
    } else {
        for (const char* check : {"default rows", "values", "own table"}) {
            verification.skip(check, "the database cannot be read");
        }
    }
    if (given.has("CSV")) {
        verify_source<KIND>(given.text("CSV"), verification);
    }
    print_verification(std::move(verification), command);
}

#pragma once

/// \file
/// The verb verify: whether a packed database is sound, byte by byte, and which table it comes from.

#include <fmt/core.h>

#include <string>
#include <utility>
#include <vector>

#include "cfg.h"
#include "files/database.h"
#include "files/file_bytes.h"
#include "files/source.h"
#include "tables/fault_output.h"
#include "tables/verify_output.h"
#include "terminal/command_line.h"

// KIND says which table it is, further:
//   DATABASE_FORMAT         what tells its databases apart
//   schema()                what one must know to read a database of it
//   key_faults(records)     what is wrong with the records as a whole: default rows, keys
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

/// Whether the source table compiles to the payload of the database. It is compiled in a directory of its own, where the
/// messages that compiling sends end up, too.
template <class KIND>
void verify_source(const std::string& csv_file, VERIFICATION& verification) {
    verification.source = csv_file;
    require_readable_table(csv_file, "CSV");
    const auto table = KIND::TABLE::from_source(csv_file);
    if (table.has_faults()) {
        print_faults(table.faults(), csv_file, KIND::TABLE::describe);
        verification.add("source", false, csv_file + " has faults");
        return;
    }
    const SCRATCH_DIRECTORY scratch;
    const std::string compiled = scratch.path("compiled.pcf");
    cfg_set_value("TESSARY_OUTBOX_DIR", scratch.path("outbox"));
    KIND::compile(csv_file, compiled);
    const bool same = open_packed_file(required_file_bytes(compiled), KIND::schema()).payload == verification.payload;
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
    } else {
        verification.skip("default rows", "the database cannot be read");
        verification.skip("values", "the database cannot be read");
    }
    if (given.has("CSV")) {
        verify_source<KIND>(given.text("CSV"), verification);
    }
    print_verification(std::move(verification), command);
}

#pragma once

/// \file
/// What verifying a database has found, for people and for programs.

#include <string>
#include <vector>

#include "tables/packed_file.h"
#include "tables/packed_schema.h"
#include "terminal/command.h"
#include "terminal/json.h"

/// What is verified so far.
struct VERIFICATION {
    std::string database;
    std::string source;  ///< "" when none is given
    std::string stamp;
    std::vector<BYTE> payload;
    std::vector<TABLE_CHECK> checks;

    bool sound() const;
    void add(std::string name, bool passed, std::string detail);
    void skip(std::string name, std::string why);
    /// Passed unless there are faults, which are told.
    void add(std::string name, const std::vector<std::string>& faults, std::string good);
};

/// Looks at the file and its payload byte by byte.
VERIFICATION verify_structure(const std::string& database, std::vector<BYTE> bytes, const PACKED_SCHEMA& schema);

/// Shows the checks, and what the database was compiled from.
void print_verification(VERIFICATION verification, COMMAND& command);

/// The schema of the answer.
JSON verification_schema();

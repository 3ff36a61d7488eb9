#pragma once

/// \file
/// The eight tables that relate the spellings of device names.

#include <array>
#include <map>
#include <string>
#include <vector>

#include "catalog.h"

/// The tables in the order of the compiled-in data. The comments say: key, entries.
enum GRAMMAR_TABLE_ID : std::size_t {
    GRAMMAR_PACKAGE_NAME,    ///< package name, ordering names
    GRAMMAR_PGM_NAME,        ///< programming name, package names
    GRAMMAR_PGM_PART_PCF,    ///< programmer part, programming names
    GRAMMAR_PGM_FAMILY_PCF,  ///< programmer family, programming names
    GRAMMAR_DEV_PART_PCF,    ///< programmer part, device-library devices
    GRAMMAR_DEV_FAMILY_PCF,  ///< programmer family, device-library devices
    GRAMMAR_PCF_FAMILY_PCF,  ///< programmer family, families
    GRAMMAR_FAMILY,          ///< family, programmer parts
    GRAMMAR_TABLE_COUNT
};

/// Entries by key, both in upper case, the entries in the order of the catalog.
using GRAMMAR = std::array<std::map<std::string, std::vector<std::string>>, GRAMMAR_TABLE_COUNT>;

/// Derives the tables. An entry under two keys of one table, and a table without a record, are faults.
GRAMMAR build_grammar(const CATALOG& catalog, const std::filesystem::path& directory, FAULTS& faults);

/// The number of entries in a table.
std::size_t entry_count(const GRAMMAR& grammar, GRAMMAR_TABLE_ID table);

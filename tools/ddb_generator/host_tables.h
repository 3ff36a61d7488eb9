#pragma once

/// \file
/// The tables behind the device-string and device-database libraries, in memory.

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "catalog.h"
#include "dstr_catalog.h"

/// The names of one kind, and the hash table that finds them.
struct NUMBERED_NAMES {
    std::vector<std::uint32_t> addresses;  ///< by number, then those of the further names
    std::vector<std::uint32_t> aliases;
    std::vector<std::uint32_t> slots;

    NAME_TABLE table() const;
};

struct HOST_TABLES {
    std::vector<std::array<char, NAME_ROW_SIZE>> rows;
    NUMBERED_NAMES families;
    NUMBERED_NAMES devices;
    NUMBERED_NAMES parts;
    std::vector<std::uint8_t> device_families;
    std::vector<PART_FACTS> part_facts;
    std::vector<PART_SPAN> device_parts;
    std::vector<FACT_TEXTS> packages;
    std::vector<FACT_TEXTS> grades;
    NAME_LIST_DIGEST part_names;

    NAME_POOL pool() const;
};

/// Builds the tables and looks up every name in them; throws std::runtime_error when one is not found.
HOST_TABLES build_host_tables(const CATALOG& catalog);

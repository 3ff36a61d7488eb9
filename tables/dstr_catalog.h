#pragma once

/// \file
/// The tables behind the device-string and device-database libraries. The build generates their definition from the
/// catalog; all of it is constant data that needs no start-up code.

#include <cstdint>
#include <string_view>

#include "ascii.h"
#include "name_list_digest.h"

/// Names lie one after another in rows of this size, each ended by a NUL and none across two rows: compilers read rows
/// of text quickly where they would take long for one array of all characters. A name is addressed by its distance from
/// the beginning of the first row.
inline constexpr std::uint32_t NAME_ROW_SIZE = 1024;

struct NAME_POOL {
    const char (*rows)[NAME_ROW_SIZE];

    const char* at(std::uint32_t address) const { return &rows[address / NAME_ROW_SIZE][address % NAME_ROW_SIZE]; }
};

/// The names of families, devices or parts, by number and by name.
struct NAME_TABLE {
    const std::uint32_t* names;    ///< addresses by number; those of further names follow; 0, the empty text: not used
    std::uint32_t count;           ///< numbers are below it
    const std::uint32_t* aliases;  ///< the numbers that the further names stand for
    const std::uint32_t* slots;    ///< a hash table of positions in `names`; 0: the slot is free
    std::uint32_t slot_mask;       ///< the number of slots, a power of two, less one; some slots are free
};

struct PART_FACTS {
    std::uint16_t device;
    std::uint8_t package;
    std::uint8_t grade;
    std::uint8_t flags;
};

inline constexpr std::uint8_t PART_IS_REAL = 1;        ///< not a number that the catalog leaves out
inline constexpr std::uint8_t PART_IS_ORDERABLE = 2;   ///< has an ordering code
inline constexpr std::uint8_t PART_IS_PRODUCTION = 4;  ///< in production
inline constexpr std::uint8_t PART_IS_HIDDEN = 8;

/// Between which numbers the parts of a device are, perhaps among others.
struct PART_SPAN {
    std::uint32_t first;
    std::uint32_t end;
};

/// Two addressed texts: a package's type and number of pins, or a grade's speed and temperature range.
struct FACT_TEXTS {
    std::uint32_t first;
    std::uint32_t second;
};

struct FACT_TABLE {
    const FACT_TEXTS* rows;
    std::uint32_t count;
};

struct DSTR_CATALOG {
    NAME_POOL pool;
    NAME_TABLE families;
    NAME_TABLE devices;
    NAME_TABLE parts;
    const std::uint8_t* device_families;  ///< by device number
    const PART_FACTS* part_facts;         ///< by part number
    const PART_SPAN* device_parts;        ///< by device number
    FACT_TABLE packages;
    FACT_TABLE grades;
    NAME_LIST_DIGEST part_names;  ///< of all numbers of parts from 1 on, but for the generic one
};

extern const DSTR_CATALOG DSTR_TABLES;

/// FNV-1a over the name in upper case.
constexpr std::uint32_t name_hash(std::string_view name) {
    std::uint32_t hash = 2166136261;
    for (const char c : name) {
        hash = (hash ^ static_cast<unsigned char>(ascii_upper(c))) * 16777619;
    }
    return hash;
}

constexpr bool equal_names(std::string_view left, std::string_view right) {
    if (left.size() != right.size()) {
        return false;
    }
    if (left == right) {
        return true;
    }
    for (std::size_t i = 0; i < left.size(); ++i) {
        if (ascii_upper(left[i]) != ascii_upper(right[i])) {
            return false;
        }
    }
    return true;
}

/// The name of a number; "" for one without.
inline const char* name_of(const NAME_POOL& pool, const NAME_TABLE& table, int number) {
    return number >= 0 && static_cast<std::uint32_t>(number) < table.count ? pool.at(table.names[number]) : "";
}

/// The number with that name, in any case; 0 when there is none.
inline int number_of(const NAME_POOL& pool, const NAME_TABLE& table, std::string_view name) {
    for (std::uint32_t slot = name_hash(name) & table.slot_mask;; slot = (slot + 1) & table.slot_mask) {
        const std::uint32_t position = table.slots[slot];
        if (position == 0) {
            return 0;
        }
        if (equal_names(pool.at(table.names[position]), name)) {
            return static_cast<int>(position < table.count ? position : table.aliases[position - table.count]);
        }
    }
}

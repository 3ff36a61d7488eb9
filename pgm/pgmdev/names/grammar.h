#pragma once

/// \file
/// The device-name grammar: eight tables that relate the spellings of a device's name.

#include <array>
#include <memory>
#include <span>
#include <string_view>
#include <vector>

#include "names/container.h"
#include "names/text_index.h"
#include "pgmdev_types.h"

/// The tables, in the order of the data set.
enum class PGMDEV_DDB_GRAMMAR_ENUM : DWORD {
    PACKAGE_NAME,    ///< package name: full ordering names
    PGM_NAME,        ///< programming name: package names
    PGM_PART_PCF,    ///< part name in programmer files: programming names
    PGM_FAMILY_PCF,  ///< family name in programmer files: programming names
    DEV_PART_PCF,    ///< part name in programmer files: device names of the device library
    DEV_FAMILY_PCF,  ///< family name in programmer files: device names of the device library
    PCF_FAMILY_PCF,  ///< family name in programmer files: family-level device names
    FAMILY,          ///< family name: part names in programmer files
    MAX
};

/// One table: keys with lists of entries. The texts belong to the store.
class GRAMMAR_TABLE {
public:
    /// The entries of a key in the order of the data set; empty when there is no such key.
    std::span<const std::string_view> entries_of(std::string_view key) const;

    /// All keys in the order of the data set.
    std::vector<std::string_view> keys() const;

    /// The first key, in byte-wise order, that has that entry; empty when none has.
    std::string_view key_of(std::string_view entry) const;

    // Building: the entries of a record come first, then its key. What is there already is not added: false.
    bool add_entry(std::string_view key, std::string_view entry);
    bool has_pending_entries() const;
    bool add_key(std::string_view key);

private:
    struct RECORD {
        std::string_view key;
        DWORD first_entry;
        DWORD entry_end;
    };

    DWORD first_pending() const { return m_records.empty() ? 0 : m_records.back().entry_end; }

    std::vector<RECORD> m_records;
    std::vector<std::string_view> m_entries;  ///< of all records, one after another
    std::vector<DWORD> m_owners;  ///< per entry: of the records that have it, so far, the first in key order
    TEXT_INDEX m_by_key;          ///< places in m_records
    TEXT_INDEX m_by_entry;        ///< places in m_entries; of equal entries the last, whose owner counts
};

/// All tables, and the decompressed data set that holds their texts.
struct GRAMMAR_STORE {
    std::unique_ptr<const BYTE[]> text;
    std::array<std::unique_ptr<GRAMMAR_TABLE>, static_cast<std::size_t>(PGMDEV_DDB_GRAMMAR_ENUM::MAX)> tables;
};

/// Builds the store from a data set, or reports what is wrong with it.
std::unique_ptr<GRAMMAR_STORE> build_grammar_store(const COMPILED_DATA_SET& set);

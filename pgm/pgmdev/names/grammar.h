#pragma once

/// \file
/// The device-name grammar: eight tables that relate the spellings of a device's name.

#include <array>
#include <memory>
#include <string_view>
#include <vector>

#include "grammar_index.h"
#include "names/container.h"
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
    GRAMMAR_TABLE(const char* text, const GRAMMAR_TABLE_INDEX& index) : m_text(text), m_index(index) {}

    /// The entries of a key in the order of the data set; empty when there is no such key.
    std::vector<std::string_view> entries_of(std::string_view key) const;

    /// All keys in the order of the data set.
    std::vector<std::string_view> keys() const;

    /// The first key, in byte-wise order, that has that entry; empty when none has.
    std::string_view key_of(std::string_view entry) const;

private:
    const char* m_text;
    GRAMMAR_TABLE_INDEX m_index;
};

/// All tables, and, unless these are compiled in, the decompressed data set that holds their texts and its index.
struct GRAMMAR_STORE {
    std::unique_ptr<const BYTE[]> text;
    INDEX_NUMBERS index;
    bool entries_have_one_key = false;  ///< known of what is compiled in, of which the build has proven it
    std::array<std::unique_ptr<GRAMMAR_TABLE>, static_cast<std::size_t>(PGMDEV_DDB_GRAMMAR_ENUM::MAX)> tables;
};

/// Builds the store from a data set, or reports what is wrong with it. What is known of its
/// stream is taken for granted.
std::unique_ptr<GRAMMAR_STORE> build_grammar_store(const COMPILED_DATA_SET& set);

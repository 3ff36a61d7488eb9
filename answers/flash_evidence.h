#pragma once

/// \file
/// What supports the rows of a flash table: for each group of members the class of its evidence and the sources, from the
/// list beside the table or the database (data/flash/README.md says what the classes are).

#include <array>
#include <string>
#include <utility>
#include <vector>

#include "csv_lines.h"
#include "pgmdev_sfl_flash_info.h"

/// What such a list is called beside a table; behind the name of a database, with a dot between.
constexpr const char* FLASH_SOURCES_LIST = "sources.csv";

/// The classes: as they are written in the list, and in words.
constexpr std::array<std::pair<const char*, const char*>, 5> FLASH_EVIDENCE_CLASSES{{
    {"datasheet", "datasheet maximum"},
    {"sfdp", "chip's own SFDP"},
    {"two", "two independent public sources"},
    {"one", "one public source"},
    {"family", "family rule"},
}};

/// The class of a cell in words; "" for a word that is none.
std::string evidence_in_words(const std::string& cell);

/// The sources that a cell names.
std::vector<std::string> evidence_sources(const std::string& cell);

/// The evidence of one group.
struct FLASH_SUPPORT {
    std::string group;
    std::string evidence;              ///< the class, in words
    std::vector<std::string> sources;  ///< keys
};

class FLASH_EVIDENCE {
public:
    explicit FLASH_EVIDENCE(CSV_LINES list);

    /// The groups of a record in their order; none: the list does not have it.
    std::vector<FLASH_SUPPORT> of(const PGMDEV_SFL_FLASH_INFO& record) const;

    const CSV_LINES& list() const { return m_list; }
    const std::vector<std::string>& groups() const { return m_groups; }

    using KEY = std::pair<std::string, std::string>;  ///< device name, compared bytes

    static KEY key_of(const PGMDEV_SFL_FLASH_INFO& record);

    /// What stands behind the key.
    struct EVIDENCE_LINE {
        std::size_t number = 0;  ///< of the line, from 1; 0: none has the key
        std::vector<std::string> cells;
    };

    /// The last line that has the key.
    EVIDENCE_LINE line_of(const KEY& key) const;

private:
    CSV_LINES m_list;
    std::vector<std::string> m_groups;
};

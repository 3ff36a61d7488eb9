#pragma once

/// \file
/// What supports the rows of a flash table: for each group of members the class of its evidence and the sources, from the
/// list beside the table or the database (data/flash/README.md says what the classes are).

#include <string>
#include <utility>
#include <vector>

#include "files/csv_lines.h"
#include "pgmdev_sfl_flash_info.h"
#include "tables/table_support.h"
#include "terminal/json.h"
#include "terminal/schema.h"

/// The evidence of one group.
struct FLASH_SUPPORT {
    std::string group;
    std::string evidence;              ///< the class, in words
    std::vector<std::string> sources;  ///< keys
};

class FLASH_EVIDENCE {
public:
    /// Of the file; of none, if there is none.
    explicit FLASH_EVIDENCE(const std::string& path);

    /// The groups of a record in their order; none: the list does not have it.
    std::vector<FLASH_SUPPORT> of(const PGMDEV_SFL_FLASH_INFO& record) const;

    /// What is wrong with the list (lines of another form, classes that do not exist, records without a line), and how many
    /// of the records have each class.
    TABLE_SUPPORT support_of(const std::vector<PGMDEV_SFL_FLASH_INFO>& records) const;

private:
    using KEY = std::pair<std::string, std::string>;  // device name, compared bytes

    static KEY key_of(const PGMDEV_SFL_FLASH_INFO& record);

    /// What stands behind the key.
    struct EVIDENCE_LINE {
        std::size_t number = 0;  ///< of the line, from 1; 0: none has the key
        std::vector<std::string> cells;
    };

    /// The last line that has the key.
    EVIDENCE_LINE line_of(const KEY& key) const;
    /// Adds what is wrong with what supports a row. The number of the line that does; 0: none.
    std::size_t check(const PGMDEV_SFL_FLASH_INFO& record, std::vector<PGMDEV_TABLE_FAULT>& faults) const;

    CSV_LINES m_list;
    std::vector<std::string> m_groups;
};

/// An object: the groups, each with "evidence" and "sources".
JSON support_json(const std::vector<FLASH_SUPPORT>& support);
JSON support_schema();

/// The schema of the shares of a table.
JSON shares_schema();

/// A line for each group.
void print_support(const std::vector<FLASH_SUPPORT>& support);

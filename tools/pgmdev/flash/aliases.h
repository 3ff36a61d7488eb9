#pragma once

/// \file
/// Further names of flash chips: those that share the record of a row, from the list beside the database.

#include <optional>
#include <string>
#include <vector>

#include "pgmdev_sfl_flash_info.h"
#include "tables/notes_files.h"

struct FLASH_ALIAS {
    std::string name;
    std::string device_name;  ///< of the row that answers for it
    std::string reason;
};

/// All of them, each list taken apart once; none where the database has no such list.
const std::vector<FLASH_ALIAS>& flash_aliases();

/// The one of this name, in any case.
std::optional<FLASH_ALIAS> find_flash_alias(const std::string& name);

/// What is wrong with the list beside a source table: lines of another form; names of no use with these records, if
/// there are any.
NOTES_FAULTS flash_alias_faults(const std::string& csv_file, const std::vector<PGMDEV_SFL_FLASH_INFO>& records);

/// Names of rows, and behind them all aliases: what a name may have meant.
std::vector<std::string> with_flash_aliases(std::vector<std::string> names);

#pragma once

/// \file
/// The further names of the installed database, and what is wrong with a list of such.

#include <optional>
#include <span>
#include <string>
#include <vector>

#include "flash_aliases.h"
#include "pgmdev_sfl_flash_info.h"
#include "tables/notes_files.h"

/// All of them, each list taken apart once; none where the database has no such list.
const std::vector<FLASH_ALIAS>& flash_aliases();

/// The one of this name, in any case.
std::optional<FLASH_ALIAS> find_flash_alias(const std::string& name);

/// What is wrong with the list beside a source table: lines of another form; names of no use with these records, if
/// there are any.
NOTES_FAULTS flash_alias_faults(const std::string& csv_file, const std::vector<PGMDEV_SFL_FLASH_INFO>& records);

/// Names of rows, and behind them all aliases: what a name may have meant.
std::vector<std::string> with_flash_aliases(std::vector<std::string> names);

/// As names_of_flash.
std::vector<std::string> names_of_installed_flash(std::span<const PGMDEV_SFL_FLASH_INFO> records);

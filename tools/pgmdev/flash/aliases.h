#pragma once

/// \file
/// Names of flash chips that no row has: those that share the record of a row, and those of chips that the table leaves
/// out, from the lists beside the database; and what is wrong with such a list.

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

/// A chip that the table leaves out.
struct LEFT_OUT_FLASH {
    std::string name;
    std::string reason;
};

/// All of them, as the list has them; none where the database has no such list.
const std::vector<LEFT_OUT_FLASH>& left_out_flash();

/// Why the table has no row for the chip of this name, in any case; nothing when the database has no list that tells it.
std::optional<std::string> why_flash_is_left_out(const std::string& name);

/// What is wrong with that list beside a source table, likewise.
NOTES_FAULTS left_out_flash_faults(const std::string& csv_file, const std::vector<PGMDEV_SFL_FLASH_INFO>& records);

/// A sentence for people: that no flash has this name, or why the table leaves it out.
std::string no_flash_named(const std::string& name);

/// Names of rows, and behind them all aliases: what a name may have meant.
std::vector<std::string> with_flash_aliases(std::vector<std::string> names);

/// As names_of_flash.
std::vector<std::string> names_of_installed_flash(std::span<const PGMDEV_SFL_FLASH_INFO> records);

#pragma once

/// \file
/// Further names of flash chips: those that share the record of a row, from the list beside a table or a database.

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "csv_lines.h"
#include "pgmdev_sfl_flash_info.h"

/// What such a list is called beside a table; behind the name of a database, with a dot between.
constexpr const char* FLASH_ALIASES_LIST = "aliases.csv";

struct FLASH_ALIAS {
    std::string name;
    std::string device_name;  ///< of the row that answers for it
    std::string reason;
};

/// How many cells a line of the list has.
constexpr std::size_t FLASH_ALIAS_CELLS = 3;

/// All aliases of the list, without lines of another form.
std::vector<FLASH_ALIAS> aliases_of(const CSV_LINES& list);

/// The first one of this name, in any case.
std::optional<FLASH_ALIAS> find_alias(const CSV_LINES& list, std::string_view name);

/// The names, and behind them all aliases.
std::vector<std::string> with_aliases(const CSV_LINES& list, std::vector<std::string> names);

/// The names by which records are found, in their order, and behind them all aliases: what a name may have meant.
std::vector<std::string> names_of_flash(std::span<const PGMDEV_SFL_FLASH_INFO> records, const CSV_LINES& list);

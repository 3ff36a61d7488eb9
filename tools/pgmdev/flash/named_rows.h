#pragma once

/// \file
/// The rows that a name stands for which another program has printed. Such names are those of a family, of an
/// identification or of an ordering code, in the spelling of that program.

#include <span>
#include <string>
#include <vector>

#include "pgmdev_sfl_flash_info.h"
#include "pgmdev_types.h"

struct NAMED_ROW {
    DWORD index = 0;
    std::string name;  ///< of the row, or another one that it answers for
};

struct NAMED_ROWS {
    std::vector<NAMED_ROW> meant;  ///< those that have the name
    std::vector<DWORD> family;     ///< those whose names go on behind it, or begin it: it may be any of these, too
};

/// All names of rows, in the order of these, then the further ones.
std::vector<NAMED_ROW> all_named_rows(std::span<const PGMDEV_SFL_FLASH_INFO> records);

/// Those of `known`, all names of rows. The names are alternatives, the first one first. A "." in them stands for any
/// character, and what is in parentheses may be missing.
NAMED_ROWS rows_named(const std::vector<std::string>& names, const std::vector<NAMED_ROW>& known);

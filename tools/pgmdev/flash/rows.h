#pragma once

/// \file
/// The rows of the flash database that look-ups choose from: those that programs use, or all, whatever switches them on.

#include <optional>
#include <string>
#include <vector>

#include "pgmdev_flash_manager.h"
#include "pgmdev_flash_table.h"
#include "pgmdev_sfl_flash_info.h"
#include "terminal/json.h"
#include "terminal/schema.h"

struct FLASH_ROW {
    PGMDEV_SFL_FLASH_INFO record;
    std::optional<DWORD> index;   ///< as `flash list` and `flash identify` count; none: switched off
    std::optional<DWORD> row;     ///< in the database, from 0; none: not known, or not from there
    std::string enabling_switch;  ///< configuration key that switches the row on; "": it always is

    bool is_enabled() const { return index.has_value(); }
};

/// The records that programs use, by index.
std::vector<FLASH_ROW> enabled_flash_rows();

/// One of them, which the manager has loaded.
FLASH_ROW enabled_flash_row(PGMDEV_FLASH_MANAGER& manager, DWORD index);

/// All rows of the database, by row.
std::vector<FLASH_ROW> all_flash_rows();
std::vector<FLASH_ROW> all_flash_rows(PGMDEV_FLASH_MANAGER& programs);  ///< which has those that programs use

/// The same database, whose records are those of all rows: for who needs no more of them than that.
PGMDEV_FLASH_TABLE flash_table();

/// The record; with `every_row` also where it stands and what switches it on.
JSON row_json(const FLASH_ROW& row, bool every_row);

/// What row_json has.
std::vector<SCHEMA_MEMBER> row_members(bool every_row);

/// What it has with or without `every_row`.
std::vector<SCHEMA_MEMBER> any_row_members();

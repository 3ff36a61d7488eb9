#pragma once

#include <string>

#include "csv_lines.h"
#include "pgmdev_flash_manager.h"

/// Loads the flash database for that many device positions. One that cannot be read throws COMMAND_FAILURE.
PGMDEV_FLASH_MANAGER open_flash_database(DWORD device_count);

/// The lists that stand beside a flash table, and travel with it as its notes do: further names of chips (flash_aliases.h),
/// chips that it leaves out, and what supports the rows (flash_evidence.h).
constexpr const char* FLASH_LEFT_OUT_LIST = "left_out.csv";

/// What one holds; nothing when it is not there. One that cannot be read throws COMMAND_FAILURE.
CSV_LINES read_flash_list(const std::string& file);

/// Where such a list is: in the directory of the table, and behind the name of the database.
std::string beside_flash_source(const std::string& csv_file, const std::string& list);
std::string beside_flash_database(const std::string& pcf_file, const std::string& list);

/// That of the installed database.
std::string installed_flash_list(const std::string& list);

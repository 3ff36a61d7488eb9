#pragma once

/// \file
/// Flash that is identified by what it says of itself, too: one whose dump is at hand, and all that the system found.

#include "flash/response_bytes.h"
#include "pgmdev_flash_sfdp.h"
#include "terminal/command_line.h"

/// `flash identify --sfdp DUMP HEX`: the record and the flash's own words side by side. A flash that no record matches gets
/// its record from them.
void identify_with_sfdp(const ARGUMENTS& given, COMMAND& command);

/// `flash identify --system [DIR]`: every serial flash that the kernel of the system found.
void identify_system(const ARGUMENTS& given, COMMAND& command);

/// What both answer.
JSON identify_sfdp_schema();
JSON identify_system_schema();

// What they share.

/// One flash, as far as it is known: its response, the record that it is mapped to, its words.
struct KNOWN_FLASH {
    std::vector<BYTE> response;
    MAPPED_FLASH mapped;
    std::optional<PGMDEV_FLASH_SFDP> sfdp;  ///< readable; none: not known
};

/// `mapped`, `index`, `device` (the members of the record), `comparison`, `sfdp`, `record` (that follows from them).
JSON known_flash_json(const KNOWN_FLASH& flash);
std::vector<SCHEMA_MEMBER> known_flash_members();
void print_known_flash(const std::string& title, const KNOWN_FLASH& flash);

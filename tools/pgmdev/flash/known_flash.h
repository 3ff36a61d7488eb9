#pragma once

/// \file
/// Flash of which more is known than its response: what it says of itself, what the system says of it.

#include <optional>
#include <string>
#include <vector>

#include "flash/identification.h"
#include "pgmdev_flash_sfdp.h"
#include "terminal/command.h"
#include "terminal/json.h"
#include "terminal/schema.h"

/// What the kernel of the system says of a flash that it found.
struct SYSTEM_FLASH {
    std::string device;  ///< "spi0.0"
    std::string jedec_id;
    std::string manufacturer;  ///< "": it does not say
    std::string partname;
    std::vector<std::string> problems;  ///< what could not be read or understood, a clause each
};

/// One flash, as far as it is known.
struct KNOWN_FLASH {
    std::string query;                                   ///< the response as it was given
    std::optional<FLASH_IDENTIFICATION> identification;  ///< none: its response is not known
    std::optional<PGMDEV_FLASH_SFDP> sfdp;               ///< not refused
    std::optional<SYSTEM_FLASH> system;
};

/// Answers with all of them: each with the record beside its own words or, when no record matches, the one that follows from
/// these. `missing` is what to say when there is none.
void give_known_flash(const std::vector<KNOWN_FLASH>& flash, FLASH_IDENTIFIER& identifier, const std::string& missing,
                      COMMAND& command);

/// The members that the devices of this answer have besides those of any chain.
std::vector<SCHEMA_MEMBER> known_flash_members();

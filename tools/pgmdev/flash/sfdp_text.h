#pragma once

/// \file
/// What a flash says of itself, for people.

#include <string>

#include "pgmdev_flash_sfdp.h"

/// All that was read of a dump. `title` is what people know it by.
void print_sfdp(const std::string& title, const PGMDEV_FLASH_SFDP& sfdp);

/// The record that follows, as a row of the source table and as lines NAME=VALUE, and what of it is assumed; or why there
/// is none.
void print_derived_record(const PGMDEV_FLASH_SFDP::DERIVED_RECORD& derived);

/// "64 KiB"
std::string bytes_text(QWORD bytes);

/// "704 us typical, 4224 us at most"
std::string duration_text(const PGMDEV_FLASH_SFDP::DURATION& time, const char* unit);

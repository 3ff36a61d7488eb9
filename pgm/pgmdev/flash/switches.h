#pragma once

/// \file
/// The switches by which records are enabled.

#include "gen.h"
#include "pgmdev_sfl_flash_info.h"

/// What a switch is called in the configuration: this, and the record's `ini` behind it.
inline constexpr const char* ENABLING_SWITCH = "PGM_ALLOW_";

/// Whether the record is enabled without a switch.
inline bool is_always_enabled(const PGMDEV_SFL_FLASH_INFO& record) {
    return gen_stricmp(record.ini, "NONE") == 0;
}

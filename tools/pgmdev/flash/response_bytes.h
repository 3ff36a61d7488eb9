#pragma once

/// \file
/// The identification response of one flash: its bytes, and the record that it is mapped to.

#include <optional>
#include <string>
#include <vector>

#include "pgmdev_flash_manager.h"

/// The bytes that a text spells, as parse_id_response takes it, and no more.
std::vector<BYTE> response_bytes(const std::string& text);

/// The record that a response is mapped to.
struct MAPPED_FLASH {
    DWORD index = INVALID_DWORD;                    ///< INVALID_DWORD: none
    const PGMDEV_SFL_FLASH_INFO* record = nullptr;  ///< of the manager; null: none
};

/// Maps position 0 of the manager. No bytes are mapped to nothing.
MAPPED_FLASH map_response(PGMDEV_FLASH_MANAGER& manager, const std::vector<BYTE>& response, bool silicon);

#pragma once

/// \file
/// Responses that no chip gives, in words.

#include <span>

#include "pgmdev_flash_candidates.h"

/// What is odd about a response; `taken` is the record that it is mapped to, INVALID_DWORD for none.
PGMDEV_FLASH_ODDITY flash_response_oddity(std::span<const PGMDEV_SFL_FLASH_INFO> records, bool silicon_id,
                                          std::span<const BYTE> response, DWORD taken);

/// How many bytes of the response tell something: not those behind an identification that only repeat it, or that are
/// what an idle bus has.
DWORD telling_bytes_of(std::span<const BYTE> response);

/// Whether the bytes are there and all have that value.
bool are_all(std::span<const BYTE> bytes, BYTE value);

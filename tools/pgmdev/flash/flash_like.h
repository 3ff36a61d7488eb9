#pragma once

/// \file
/// A flash of the database that another one is like.

#include <optional>
#include <string>

#include "pgmdev_sfl_flash_info.h"

/// The default row of the name that the text is, without blanks around it, or of the flash that it is another name of,
/// whatever switches it on; nothing when there is none.
std::optional<PGMDEV_SFL_FLASH_INFO> row_like(const std::string& text);

/// "did you mean A, B", or "".
std::string rows_near(const std::string& name);

#pragma once

/// \file
/// Flash records in the packed database and in the source table.

#include "pgmdev_sfl_flash_info.h"
#include "records/codec.h"

template <>
struct RECORD_SCHEMA<PGMDEV_SFL_FLASH_INFO> {
    static constexpr const auto& MEMBERS = PGMDEV_SFL_FLASH_MEMBERS;
    static constexpr const PACKED_FORMAT& FORMAT = FLASH_FORMAT;
    static constexpr CELL_SYNTAX SYNTAX{false, R"(string == "FALSE" || string == "TRUE")", nullptr};
    static constexpr const char* WRONG_CELL_COUNT = "svec.size() == TOTAL_DATABASE_MEMBER";
};

using FLASH_CODEC = RECORD_CODEC<PGMDEV_SFL_FLASH_INFO>;

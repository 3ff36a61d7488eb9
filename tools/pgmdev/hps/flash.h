#pragma once

/// \file
/// The two kinds of boot flash lists, so that one verb serves both.

#include <array>
#include <string_view>
#include <vector>

#include "hps_fields.h"
#include "pgmdev_hps_nand_mgr.h"
#include "pgmdev_hps_spi_mgr.h"

/// The value of a field that the user may leave out, as the user would write it.
struct FIELD_DEFAULT {
    std::string_view name;
    std::string_view value;
};

/// NAND flash.
struct HPS_NAND {
    using RECORD = PGMDEV_HPS_NAND_STRUCTURE;
    using MANAGER = PGMDEV_HPS_NAND_MGR;
    static constexpr std::string_view VERB_NAME = "nand";  ///< of the verb that lists them
    static constexpr PGMDEV_FLASH_INI_ENUM BLOCK = PGMDEV_FLASH_INI_HPS_NAND;
    static constexpr std::string_view STAMP = PGMDEV_HPS_NAND_STAMP;
    static constexpr const auto& MEMBERS = PGMDEV_HPS_NAND_MEMBERS;
    static constexpr const auto& CHECKS = HPS_NAND_CHECKS;
    static constexpr std::array<FIELD_DEFAULT, 0> DEFAULTS{};
};

/// SPI flash.
struct HPS_SPI {
    using RECORD = PGMDEV_HPS_SPI_STRUCTURE;
    using MANAGER = PGMDEV_HPS_SPI_MGR;
    static constexpr std::string_view VERB_NAME = "spi";
    static constexpr PGMDEV_FLASH_INI_ENUM BLOCK = PGMDEV_FLASH_INI_HPS_SPI;
    static constexpr std::string_view STAMP = PGMDEV_HPS_SPI_STAMP;
    static constexpr const auto& MEMBERS = PGMDEV_HPS_SPI_MEMBERS;
    static constexpr const auto& CHECKS = HPS_SPI_CHECKS;
    static constexpr std::array DEFAULTS{
        FIELD_DEFAULT{"silicon_id_mask", "0xFFFFFF"},
        FIELD_DEFAULT{"ext_id", "0"},
        FIELD_DEFAULT{"ext_id_mask", "0"},
        FIELD_DEFAULT{"page_byte", "256"},
        FIELD_DEFAULT{"code_c", "1"},
        FIELD_DEFAULT{"die_count", "1"},
        FIELD_DEFAULT{"flag_a", "1"},
    };
};

#pragma once

/// \file
/// How a kind of hard processor system reaches its boot flash.

#include <array>
#include <string>
#include <vector>

#include "hps/flash.h"
#include "pgmdev_hps_mgr.h"
#include "terminal/json.h"
#include "terminal/schema.h"

/// What of a kind concerns flash of one sort.
struct BOOT_PORT {
    struct MEMBER {
        const char* name;
        DWORD PGMDEV_HPS_STRUCTURE::*field;
        bool hex;  ///< people read it in hexadecimal
    };
    std::array<MEMBER, 3> members;
};

inline constexpr BOOT_PORT NAND_PORT{{{{"nand_data_bits", &PGMDEV_HPS_STRUCTURE::nand_data_bits, false},
                                       {"nand_controller_base", &PGMDEV_HPS_STRUCTURE::nand_controller_base, true},
                                       {"nand_data_base", &PGMDEV_HPS_STRUCTURE::nand_data_base, true}}}};
inline constexpr BOOT_PORT SPI_PORT{{{{"spi_selects", &PGMDEV_HPS_STRUCTURE::spi_selects, false},
                                      {"spi_controller_base", &PGMDEV_HPS_STRUCTURE::spi_controller_base, true},
                                      {"spi_data_base", &PGMDEV_HPS_STRUCTURE::spi_data_base, true}}}};

template <class FLASH>
inline constexpr const BOOT_PORT& PORT = FLASH::BLOCK == PGMDEV_FLASH_INI_HPS_NAND ? NAND_PORT : SPI_PORT;

/// The kind with that name (in any case), identification code or index, which becomes the current one. None throws
/// USAGE_ERROR, which lists the kinds.
const PGMDEV_HPS_STRUCTURE& chosen_kind(const std::string& text);

/// Adds the kind's name and its members of the port.
void add_port(JSON& object, const PGMDEV_HPS_STRUCTURE& kind, const BOOT_PORT& port);

/// What add_port adds.
std::vector<SCHEMA_MEMBER> port_members(const BOOT_PORT& port);

/// One line for people, and an empty one.
void print_port(const PGMDEV_HPS_STRUCTURE& kind, const BOOT_PORT& port);

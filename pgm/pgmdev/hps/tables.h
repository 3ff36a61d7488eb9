#pragma once

/// \file
/// The built-in HPS kinds and boot flash devices.

#include <array>

#include "pgmdev_hps_mgr.h"
#include "pgmdev_hps_nand_mgr.h"
#include "pgmdev_hps_spi_mgr.h"

/// A NAND flash as a row of the built-in table.
struct HPS_NAND_ROW {
    DWORD manufacturer_id;
    DWORD device_id;
    QWORD device_byte_size;
};

/// An SPI flash as a row of the built-in table. What all rows have in common stands below.
struct HPS_SPI_ROW {
    const char* manufacturer_name;
    const char* device_name;
    DWORD silicon_id;
    DWORD ext_id;
    DWORD ext_id_mask;
    QWORD device_bit_size;
    DWORD device_sector_byte;
    DWORD page_byte;
    DWORD bulk_erase_time;
    DWORD code_a;
    DWORD code_b;
    DWORD sec_erase_time;
    DWORD die_count;
    bool flag_a;
    DWORD erase_opcode;
    DWORD program_opcode;
    DWORD read_opcode;
};
inline constexpr DWORD HPS_SPI_SILICON_ID_MASK = 0xFFFFFF;
inline constexpr DWORD HPS_SPI_CODE_C = 1;

extern const std::array<PGMDEV_HPS_STRUCTURE, 2> HPS_KINDS;
extern const std::array<HPS_NAND_ROW, 10> HPS_NAND_ROWS;
extern const std::array<HPS_SPI_ROW, 27> HPS_SPI_ROWS;

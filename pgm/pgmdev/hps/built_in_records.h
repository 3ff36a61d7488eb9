#pragma once

/// \file
/// The built-in boot flash: records one after another, encoded as in a block of the parameter container. The build
/// generates the definitions from the tables in data/hps.

#include "pgmdev_types.h"

extern const BYTE HPS_NAND_RECORDS[];
extern const DWORD HPS_NAND_RECORDS_LENGTH;  ///< in bytes
extern const BYTE HPS_SPI_RECORDS[];
extern const DWORD HPS_SPI_RECORDS_LENGTH;  ///< in bytes

#pragma once

/// \file
/// The tags of the packed database encoding.

#include "pgmdev_types.h"

/// The byte before every value of a packed database. It says how the value is stored; all numbers are little-endian.
/// The value 9 is not used.
enum PGMDEV_MANAGER_TYPE : BYTE {
    PGMDEV_MANAGER_DEVID_ENUM = 0,   ///< 4 bytes; accepted when reading device profiles, never written
    PGMDEV_MANAGER_DEVID_STR = 1,    ///< a length byte, then that many characters
    PGMDEV_MANAGER_STRING = 2,       ///< a length byte, then that many characters
    PGMDEV_MANAGER_BOOL = 3,         ///< 1 byte, 0 or 1
    PGMDEV_MANAGER_BYTE = 4,         ///< 1 byte
    PGMDEV_MANAGER_WORD = 5,         ///< 2 bytes
    PGMDEV_MANAGER_DWORD = 6,        ///< 4 bytes
    PGMDEV_MANAGER_ENUM = 7,         ///< 4 bytes, the value of an enumerator
    PGMDEV_MANAGER_FAMILY_TBL = 8,   ///< opens the family index table: a 4-byte count, then 4 bytes an entry
    PGMDEV_MANAGER_DEVICE_TBL = 10,  ///< opens the device index table, likewise
    PGMDEV_MANAGER_PART_TBL = 11     ///< opens the part index table, likewise
};

#pragma once

/// \file
/// The enumerators that device profiles name, with the numbers that are stored for them.

#include <array>
#include <string_view>

#include "dstr.h"
#include "pgmdev_types.h"

/// One enumerator: a device family, a block of the bitstream, or a configuration scheme.
struct PGMDEV_DEV_INFO_ENUMERATOR {
    std::string_view name;
    DWORD value;
};

/// All of them, in search order; the empty name stands for none. A value may have two names, of different enumerations.
inline constexpr std::array<PGMDEV_DEV_INFO_ENUMERATOR, 13> PGMDEV_DEV_INFO_ENUMERATORS{{
    {"DEV_FAMILY_KESTREL", DEV_FAMILY_KESTREL},
    {"DEV_FAMILY_OSPREY", DEV_FAMILY_OSPREY},
    {"DEV_FAMILY_HERON", DEV_FAMILY_HERON},
    {"DEV_FAMILY_MERLIN", DEV_FAMILY_MERLIN},
    {"NPCF_BLOCK_CRAM", 37},
    {"NPCF_BLOCK_ERAM", 38},
    {"NPCF_BLOCK_CB_HEADER2", 6},
    {"PGMIO_AVST_X8", 20},
    {"DEV_FAMILY_PETREL", DEV_FAMILY_PETREL},
    {"DEV_FAMILY_PLOVER", DEV_FAMILY_PLOVER},
    {"DEV_FAMILY_SHRIKE", DEV_FAMILY_SHRIKE},
    {"NPCF_BLOCK_POSTAMBLE", 39},
    {"", INVALID_DWORD},
}};

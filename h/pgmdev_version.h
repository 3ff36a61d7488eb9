#pragma once

/// \file
/// What this library is: its version, the catalog compiled into it, and the files that it reads.

#include <string>

#include "pgmdev_export.h"
#include "pgmdev_types.h"

class PGMDEV_EXPORT PGMDEV_VERSION {
public:
    PGMDEV_VERSION() = delete;

    /// The version of this library, such as "1.0.0".
    static std::string library();

    /// Tells catalogs apart: the CRC-32 of the device-name grammar, '-', and that of the ordering codes, of 8 lower-case
    /// hexadecimal digits each.
    static std::string catalog();

    /// The stamps of the packed databases that this library reads, and the version of their bodies.
    static std::string flash_stamp();
    static std::string dev_info_stamp();
    static DWORD body_version();
};

#pragma once

/// \file
/// The device catalog of the source tree, and its numbers as the host's.

#include "dev.h"
#include "support/plain_catalog.h"

inline const PLAIN_CATALOG& catalog() {
    static const PLAIN_CATALOG plain = read_plain_catalog(TEST_DATA_DIR "/catalog");
    return plain;
}

inline DEV_DEVICE_ENUM device(int number) {
    return static_cast<DEV_DEVICE_ENUM>(number);
}

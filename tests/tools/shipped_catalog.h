#pragma once

/// \file
/// The catalog as shipped, and its names as the generated tables have them.

#include <algorithm>
#include <cctype>
#include <string>

#include "support/plain_catalog.h"

inline const PLAIN_CATALOG& catalog() {
    static const PLAIN_CATALOG plain = read_plain_catalog(TEST_DATA_DIR "/catalog");
    return plain;
}

inline std::string upper(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(), [](char c) { return static_cast<char>(std::toupper(c)); });
    return text;
}

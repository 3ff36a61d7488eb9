#pragma once

/// \file
/// A configuration file as a whole, as the host reads it.

#include <string>

struct CONFIGURATION_FILE {
    bool exists = false;
    std::string obstacle;   ///< why it cannot be read: a clause for people; "" when nothing of the kind is known
    bool is_whole = false;  ///< it was read to its end, and is no larger than what the host reads
    std::string text;       ///< in UTF-8 as a rule, perhaps behind a byte-order mark
};

CONFIGURATION_FILE read_configuration_file(const std::string& path);

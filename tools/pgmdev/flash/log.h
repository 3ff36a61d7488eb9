#pragma once

/// \file
/// The identification of a flash in what other programs print: boot loaders, kernels, tools that probe, hex dumps.

#include <iosfwd>
#include <optional>
#include <string>
#include <vector>

#include "pgmdev_types.h"

struct LOG_FINDING {
    /// How much it says, the most first.
    enum class KIND {
        BYTES,  ///< an identification, said to be one
        NAME,   ///< the name of a flash
        DUMP    ///< bytes of which nobody says what they are
    };

    KIND kind = KIND::BYTES;
    std::size_t line = 0;  ///< the last one that it takes, from 1
    std::string text;      ///< that line
    std::vector<BYTE> bytes;
    std::vector<std::string> names;  ///< what the flash may be called

    /// The bytes as `flash identify` takes them.
    std::string response() const;
};

/// All that say most, in their order; nothing when the log begins as UTF-16 and does not go on as such. At most 16 MiB are
/// read, and of a line 4096 characters.
std::optional<std::vector<LOG_FINDING>> find_in_log(std::istream& log);

#pragma once

/// \file
/// Files replaced by the host's own means.

#include <string>

#include "fio.h"

inline bool write(FIO_REPLACEMENT& replacement, const std::string& contents) {
    return replacement.write({reinterpret_cast<const BYTE*>(contents.data()), contents.size()});
}

inline bool replace(const std::string& target, const std::string& contents) {
    FIO_REPLACEMENT replacement(target);
    return write(replacement, contents) && replacement.commit();
}

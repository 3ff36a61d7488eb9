#pragma once

/// \file
/// The text beside a parameter container, as the tests themselves write and read it.

#include <memory>
#include <string>

#include "pgm_common.h"
#include "pgmdev_version.h"

namespace ini_reference {

inline std::string digest(const std::string& bytes) {
    const std::unique_ptr<BYTE[]> digest(PGM_COMMON::get_block_sha(bytes.data(), bytes.size(), 32));
    std::string text;
    for (std::size_t i = 0; i < 32; ++i) {
        text += "0123456789abcdef"[std::size_t{digest[i]} >> 4];
        text += "0123456789abcdef"[std::size_t{digest[i]} & 0xF];
    }
    return text;
}

/// The text of a container, at the time when it replaces another one or behind that.
inline std::string info(const std::string& container, const std::string& replaced = "") {
    return "container = pgm_flash.ini\ncontainer_sha256 = " + digest(container) + "\nwritten_by = pgmdev " +
           PGMDEV_VERSION::library() + "\n" + (replaced.empty() ? "" : "replaces_sha256 = " + digest(replaced) + "\n");
}

/// Whether a container has no text, or one that tells of it.
inline bool is_told_of(const std::string& container, const std::string& info) {
    return info.empty() || info.find("_sha256 = " + digest(container) + "\n") != std::string::npos;
}

}  // namespace ini_reference

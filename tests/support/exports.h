#pragma once

/// \file
/// What a library exports.

#include <string>
#include <vector>

/// A name that a library defines for others.
struct EXPORT {
    std::string name;     ///< as it is written in C++
    std::string version;  ///< the version that programs link against; "" on systems that have none
    bool inlined;         ///< comes from a header, so that not every compiler makes the library export it
};

std::vector<EXPORT> exports_of(const std::string& library);

#pragma once

/// \file
/// The values that parts can be filtered by. The device library does not list them: these are those of the catalog that
/// this build was made with, and the device library tells which part has which.

#include <string>
#include <vector>

/// Each value once, numbers ascending.
struct PART_VALUES {
    std::vector<std::string> packages;  ///< types
    std::vector<std::string> pins;
    std::vector<std::string> speeds;
    std::vector<std::string> temperatures;
};

const PART_VALUES& part_values();

#pragma once

/// \file
/// The files that the library looks for, and what led to them: option, environment variable, or default.

#include <string>
#include <vector>

/// A file, and what led to its place, the nearest cause first.
struct PLACE {
    std::string path;
    std::vector<std::string> tried;
};

PLACE flash_database_place();
PLACE profile_database_place();
PLACE part_list_place();
PLACE container_place();
PLACE configuration_place();

/// A file that the user has named behind a verb.
PLACE argument_place(const std::string& path, const std::string& argument);

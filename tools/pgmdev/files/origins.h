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

// Directories.
PLACE installation_place();
PLACE database_directory_place();
PLACE module_place();
PLACE outbox_place();

// Files in them.
PLACE flash_database_place();
PLACE profile_database_place();
PLACE part_list_place();
PLACE container_place();

/// What a later one says wins.
std::vector<PLACE> configuration_places();

/// A file that the user has named behind a verb.
PLACE argument_place(const std::string& path, const std::string& argument);

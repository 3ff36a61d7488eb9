#pragma once

/// \file
/// The temporary files of FIO_REPLACEMENT.

#include <sys/types.h>

#include <cstdint>
#include <filesystem>

#include "fio.h"

/// Creates a new empty file in the directory, one without a name where there can be such files: `path` leads to it, and
/// `unnamed` receives its descriptor. `path` stays empty when no file can be created. Removes what others have left behind.
void create_temporary(const std::filesystem::path& directory, mode_t mode, FIO_PATH& path, std::intptr_t& unnamed);

/// Gives a file that has no name one in the directory; its path becomes that, and its descriptor is closed. Only now it
/// shows where that is forbidden: then a copy has the name.
bool give_name(FIO_PATH& file, std::intptr_t& unnamed, const std::filesystem::path& directory);

#pragma once

/// \file
/// The temporary files of FIO_REPLACEMENT.

#include <sys/types.h>

#include <filesystem>

#include "fio.h"

/// Creates a new empty file in the directory, one without a name where there can be such files: `path` leads to it, and
/// `unnamed` receives its descriptor. `path` stays empty when no file can be created. Removes what others have left behind.
void create_temporary(const std::filesystem::path& directory, mode_t mode, FIO_PATH& path, int& unnamed);

/// Opens a temporary that has a name for writing, and nothing else that somebody may have given that name.
int open_named(const FIO_PATH& file, int flags = 0);

/// Gives a file that has no name one in the directory, and its path becomes that. Only now it shows where that is
/// forbidden: then a copy has the name. Returns the descriptor of what has it, which is the caller's; -1, and nothing has
/// changed, when there is none.
int give_name(FIO_PATH& file, int& unnamed, const std::filesystem::path& directory);

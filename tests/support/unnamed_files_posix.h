#pragma once

/// \file
/// Files that have no name.

#include <fcntl.h>
#include <unistd.h>

#include <filesystem>

/// Whether there can be such files in the directory.
inline bool has_unnamed_files(const std::filesystem::path& directory) {
    const int file = ::open(directory.c_str(), O_TMPFILE | O_WRONLY | O_CLOEXEC, 0600);
    return file >= 0 && ::close(file) == 0;
}

#pragma once

/// \file
/// Files that have no name.

#include <fcntl.h>
#include <unistd.h>

#include <filesystem>
#include <string>

/// Whether there can be such files in the directory, and the system shows paths that lead to them.
inline bool has_unnamed_files(const std::filesystem::path& directory) {
    const int file = ::open(directory.c_str(), O_TMPFILE | O_WRONLY | O_CLOEXEC, 0600);
    if (file < 0) {
        return false;
    }
    const bool can_be_opened = ::access(("/proc/self/fd/" + std::to_string(file)).c_str(), F_OK) == 0;
    return ::close(file) == 0 && can_be_opened;
}

/// A place for files of tests where there can be: the one for all, or else the one in memory.
inline std::filesystem::path place_for_unnamed_files() {
    const std::filesystem::path place = std::filesystem::temp_directory_path();
    return has_unnamed_files(place) ? place : "/dev/shm";
}

#pragma once

/// \file
/// Reading files that other processes may be replacing at the same time.

#include <filesystem>
#include <fstream>

#if defined(_WIN32)

/// Opens the file, in binary mode. While a file takes the place of another one, Windows lets nobody open it; this waits
/// for the end of that, for a second or two.
std::ifstream open_replaced_file(const std::filesystem::path& path, std::ios::openmode mode = {});

#else

/// Opens the file, in binary mode: the old one or the new one.
inline std::ifstream open_replaced_file(const std::filesystem::path& path, std::ios::openmode mode = {}) {
    return std::ifstream(path, mode | std::ios::binary);  // NOLINT(modernize-return-braced-init-list): explicit
}

#endif

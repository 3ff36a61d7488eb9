#pragma once

/// \file
/// Paths as the system completes them.

#include <filesystem>

/// The path, taken from the current directory when it is relative; empty when the system cannot tell.
std::filesystem::path absolute_path(const std::filesystem::path& path);

/// The absolute path without "." and ".."; where the system has symbolic links they are followed, as far as the path
/// exists.
std::filesystem::path resolved_path(const std::filesystem::path& path);

#pragma once

/// \file
/// The loaded library behind an address.

#include <filesystem>

/// The directory that this library was loaded from; the current directory when the system does not tell.
std::filesystem::path host_library_directory();

/// Whether the address is in this library.
bool is_in_host_library(const void* address);

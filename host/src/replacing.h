#pragma once

/// \file
/// The steps of FIO_REPLACEMENT that differ by the system.

#include <filesystem>
#include <span>

#include "fio.h"

/// Writes the whole contents into a file that exists, in place of what it held.
bool overwrite(const FIO_PATH& file, std::span<const BYTE> contents);

/// The same into the target itself, and to the disk. Where there is no room for it, the target stays as it was.
bool write_in_place(const std::filesystem::path& target, std::span<const BYTE> contents);

/// Flushes a file to the disk and gives it the target's name; false, and the target stays, when that fails.
bool put_in_place(const FIO_PATH& file, const std::filesystem::path& target);

void remove_file(const FIO_PATH& file);

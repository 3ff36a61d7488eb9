#pragma once

/// \file
/// The steps of FIO_REPLACEMENT that differ by the system.

#include <filesystem>
#include <span>

#include "fio.h"

/// A temporary file has a name, or stands open under a number of the system's instead, and is found by its path only in
/// this process.
inline constexpr int NAMED = -1;

/// Writes the whole contents into a temporary file, in place of what it held.
bool overwrite(const FIO_PATH& file, int unnamed, std::span<const BYTE> contents);

/// The same into the target itself, and to the disk. Where there is no room for it, the target stays as it was.
bool write_in_place(const std::filesystem::path& target, std::span<const BYTE> contents);

/// Flushes a temporary file to the disk and gives it the target's name; false, and the target stays, when that fails. One
/// without a name gets another one before, and may keep that.
bool put_in_place(FIO_PATH& file, int& unnamed, const std::filesystem::path& target);

/// Removes a temporary file.
void discard(const FIO_PATH& file, int unnamed);

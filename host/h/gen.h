#pragma once

/// \file
/// General utilities: the host tool's directories, and small operations on text.
///
/// A directory is looked up in this order: the value set by the program, the environment variable, the place relative
/// to the installation. It is an absolute UTF-8 path without a trailing separator.

#include <string>
#include <string_view>
#include <vector>

#include "host_export.h"
#include "host_types.h"

/// The installation directory: it holds the databases, the part list "h/pgm_parts.txt" and "tessary.conf". Environment:
/// TESSARY_INSTALL_DIR. Otherwise the "share/tessary" nearest above this library, or that of the directory above this
/// library's when there is none.
HOST_EXPORT std::string gen_get_tessary_path();

/// The device-database directory; the compiled databases are in its subdirectory "programmer". Environment:
/// TESSARY_DEVICE_DB_DIR. Otherwise "devices" of the installation directory.
HOST_EXPORT std::string gen_get_device_db_fullpath();

/// The directory of the device-data library, where its parameter container is. Environment: TESSARY_MODULE_DIR.
/// Otherwise the directory of this library, which is installed beside it. Where that has no container and may not be
/// written, the first state directory that has one, or else that may be written: the system's, /var/lib/tessary (on
/// Windows %PROGRAMDATA%\tessary), which an administrator makes; the user's, ~/.local/state/tessary or
/// XDG_STATE_HOME/tessary (%LOCALAPPDATA%\tessary), which is made when something is written there.
HOST_EXPORT std::string gen_get_module_path();

/// The state directories, the one to be preferred first: for files that programs write, where the directories above may
/// not be written. They need not exist.
HOST_EXPORT std::vector<std::string> gen_get_state_paths();

/// Sets the directory for this process; an empty path returns to the other sources.
HOST_EXPORT void gen_set_tessary_path(const std::string& directory);
HOST_EXPORT void gen_set_device_db_fullpath(const std::string& directory);
HOST_EXPORT void gen_set_module_path(const std::string& directory);

/// Compares two texts byte by byte as if ASCII letters had no case: negative, 0 or positive.
HOST_EXPORT int gen_stricmp(std::string_view left, std::string_view right);

/// The text without the blanks, tabs, line feeds, carriage returns, vertical tabs and form feeds at its two ends.
HOST_EXPORT std::string gen_remove_leading_and_trailing_white_spaces(const std::string& text);

/// The number that the digits of `text` spell in `base` (2 to 36), whatever the locale: 2^64 - 1 for one that does not
/// fit into 64 bits, 0 for a text that is empty or has anything but digits.
HOST_EXPORT QWORD gen_local_strtoQWORD(const std::string& text, int base);

/// The text with its ASCII letters in upper case; all other bytes stay as they are.
HOST_EXPORT std::string gen_ascii_toupper(const std::string& text);

/// The number in decimal.
HOST_EXPORT std::string gen_itoa(int value);

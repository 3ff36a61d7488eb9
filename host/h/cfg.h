#pragma once

/// \file
/// Configuration: keys with text values. Keys are compared exactly.
///
/// A key is looked up in this order: values set by the program, environment variables of the key's name, the
/// configuration files. A file holds lines `KEY = value`; blank lines and lines that begin with '#' are ignored, the
/// last line of a key counts. The environment variable TESSARY_CONFIG_FILE names the only one; otherwise a key is looked
/// up in "tessary.conf" in the installation directory, then in the user's own one, then in the system's (on Linux
/// ~/.config/tessary or XDG_CONFIG_HOME/tessary, and /etc/tessary; on Windows %APPDATA%\tessary and
/// %PROGRAMDATA%\tessary). They are read once, when the first key is looked up, and need not exist.
/// All operations may be called from any thread.

#include <string>
#include <vector>

#include "host_export.h"

/// The host's boolean-like answer; only its truth value means anything.
using ORVANE_BOOL = int;

/// Whether the switch is on. On is "on", "true", "yes" or "1", off is "off", "false", "no" or "0", ignoring case; a key
/// without a value, or with any other one, gives `default_value`.
HOST_EXPORT ORVANE_BOOL cfg_is_on(const std::string& key, bool default_value);

/// The value of a key, or "".
HOST_EXPORT std::string cfg_get_value(const std::string& key);

/// Sets a value for this process; it wins over the environment and the file, even when empty.
HOST_EXPORT void cfg_set_value(const std::string& key, const std::string& value);

/// Forgets a value set by cfg_set_value.
HOST_EXPORT void cfg_clear_value(const std::string& key);

/// The configuration files that count, whether they exist or not. What a later one says wins.
HOST_EXPORT std::vector<std::string> cfg_get_file_paths();

#pragma once

/// \file
/// The version of the host tool. The reference host has it from the project's version number, whose fourth part is the
/// build number.

#include <string>

#include "host_export.h"
#include "host_types.h"

/// The version, such as "7.1.0".
HOST_EXPORT std::string ver_get_version();

/// Bits 0 to 7: the service pack, 0 for none. Bits 8 to 23: the build number.
HOST_EXPORT DWORD ver_get_current_version_index_number();

/// Sets both for this process; an empty version returns to those of the build. Set them while no other thread is using
/// the library.
HOST_EXPORT void ver_set_version(const std::string& version, DWORD index_number);

#pragma once

/// \file
/// What conversions of names print to standard output while PGMDEV_ENABLE_GRAMMAR_DEBUG is on.

#include <string>

/// Whether the switch is on; asks the host anew every time.
bool grammar_is_traced();

// Print when the switch is on.
void trace_package_name(const std::string& name, const std::string& out);
void trace_pgm_name(const std::string& name, bool skip_package_conversion, const std::string& package_name,
                    const std::string& out);

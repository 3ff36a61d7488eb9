#pragma once

/// \file
/// Looking at a file that something has failed on: as little of it as explains the failure.

#include <filesystem>
#include <string>
#include <vector>

#include "pgmdev_types.h"

/// What can be said of a file without knowing what it should hold.
struct INSPECTED_FILE {
    std::string obstacle;  ///< why it cannot be read: a clause for people; "" when it can
    bool missing = false;  ///< nothing of that name exists
    QWORD size = 0;
    std::string beginning;  ///< at most as many bytes as were asked for
};

/// The file as far as its first bytes. Pipes and devices are not opened.
INSPECTED_FILE inspect_file(const std::string& path, std::size_t bytes);

/// Whether the file is a pipe or a device, of which reading takes something away.
bool is_stream(const std::string& path);

/// What the system says about its last error; "" when it says nothing.
std::string system_reason();
void forget_system_reason();

/// Why the system would not let this user write the file, or make it in its directory; "" when it would.
std::string reason_not_to_write(const std::filesystem::path& file);

/// A reason of the system as a clause for people.
std::string as_clause(const std::string& reason);

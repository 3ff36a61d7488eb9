#pragma once

/// \file
/// Where the system's habits have programs keep what belongs to no installation, in directories of their own.

#include <filesystem>
#include <string>
#include <vector>

/// The directories of configuration files, the least important first: the system's, the user's.
std::vector<std::filesystem::path> configuration_directories();

/// The directories of files that programs write, the one to be preferred first: the system's, the user's.
std::vector<std::filesystem::path> state_directories();

/// Where a file or directory called `name` is: in `directory`, where it has always been, or in one of the state
/// directories when it is not there, and could not be made there.
std::filesystem::path writable_place(const std::filesystem::path& directory, const std::string& name);

/// Makes the directory, with those above it, when it is a state directory of the user.
void make_state_directory(const std::filesystem::path& directory);

/// Whether files can be made in the directory or, while it does not exist, the nearest one above it that does.
bool is_writable_directory(const std::filesystem::path& directory);

/// The user's directories by the system's habits; empty when the system has none for this process.
struct HABITUAL_DIRECTORIES {
    std::filesystem::path system_configuration;
    std::filesystem::path user_configuration;
    std::filesystem::path system_state;
    std::filesystem::path user_state;
};

HABITUAL_DIRECTORIES habitual_directories();

/// Whether the process may make files in a directory that exists.
bool may_write_into(const std::filesystem::path& directory);

#pragma once

/// \file
/// Libraries that a test loads and unloads, and what the process holds in between.

#include <filesystem>
#include <string>

/// A library for as long as this object lives. One that cannot be loaded throws std::runtime_error.
class LOADED_LIBRARY {
public:
    explicit LOADED_LIBRARY(const std::filesystem::path& path);
    ~LOADED_LIBRARY();
    LOADED_LIBRARY(const LOADED_LIBRARY&) = delete;
    LOADED_LIBRARY& operator=(const LOADED_LIBRARY&) = delete;

    /// A function without parameters that returns a number.
    using FUNCTION = int (*)();
    FUNCTION function(const char* name) const;

private:
    void* m_handle;
};

/// Whether a library is in the process.
bool is_loaded(const std::filesystem::path& path);

/// How many files, or handles of the system, the process has open.
std::size_t open_handles();

/// Bytes of memory in use.
std::size_t memory_in_use();

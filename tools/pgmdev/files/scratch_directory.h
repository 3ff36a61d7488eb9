#pragma once

/// \file
/// Files that nobody is to keep.

#include <filesystem>
#include <string>

/// A directory for the time of a check, that goes with everything in it.
class SCRATCH_DIRECTORY {
public:
    SCRATCH_DIRECTORY();
    ~SCRATCH_DIRECTORY();
    SCRATCH_DIRECTORY(const SCRATCH_DIRECTORY&) = delete;
    SCRATCH_DIRECTORY& operator=(const SCRATCH_DIRECTORY&) = delete;

    std::string path(const std::string& name) const;

private:
    std::filesystem::path m_directory;
};

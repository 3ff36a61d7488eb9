#pragma once

/// \file
/// Files of a fuzzer, in memory where the system has a place for that.

#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>

/// A directory of this process, which goes with it.
class SCRATCH_FILES {
public:
    SCRATCH_FILES() {
        namespace fs = std::filesystem;
        const fs::path memory = "/dev/shm";
        const fs::path place = fs::is_directory(memory) ? memory : fs::temp_directory_path();
        m_directory = place / ("pgmdev-fuzz-" + std::to_string(::getpid()));
        fs::create_directories(m_directory);
    }
    ~SCRATCH_FILES() {
        std::error_code ignored;
        std::filesystem::remove_all(m_directory, ignored);
    }
    SCRATCH_FILES(const SCRATCH_FILES&) = delete;
    SCRATCH_FILES& operator=(const SCRATCH_FILES&) = delete;

    std::string directory() const { return m_directory.string(); }
    std::string path(const std::string& name) const { return (m_directory / name).string(); }

    /// Writes a file, and the directory that it is in, and gives its path.
    std::string write(const std::string& name, std::string_view contents) const {
        const std::filesystem::path file = m_directory / name;
        std::filesystem::create_directories(file.parent_path());
        std::ofstream(file, std::ios::binary) << contents;
        return file.string();
    }

private:
    std::filesystem::path m_directory;
};

inline const SCRATCH_FILES& scratch_files() {
    static const SCRATCH_FILES files;
    return files;
}

#pragma once

/// \file
/// Files of a test: a directory that goes with the test, and whole files as texts.

#include <gtest/gtest.h>

#include <atomic>
#include <filesystem>
#include <fstream>
#include <random>
#include <sstream>
#include <string>

#include "replaced_file.h"
#include "utf8_path.h"

/// Removes the directory with everything in it, paths of any length included.
void remove_tree(const std::filesystem::path& directory);

/// A new empty directory that is removed with everything in it. Names are UTF-8.
class SCRATCH {
public:
    explicit SCRATCH(const std::filesystem::path& parent = std::filesystem::temp_directory_path()) {
        static std::atomic<unsigned> counter{0};
        m_directory =
            parent / ("pgmdev-test-" + std::to_string(std::random_device{}()) + "-" + std::to_string(++counter));
        std::filesystem::create_directories(m_directory);
    }
    ~SCRATCH() { remove_tree(m_directory); }
    SCRATCH(const SCRATCH&) = delete;
    SCRATCH& operator=(const SCRATCH&) = delete;

    const std::filesystem::path& directory() const { return m_directory; }
    std::string path(const std::string& name) const {
        return utf8_from_path((m_directory / path_from_utf8(name)).make_preferred());
    }

    /// Writes a file, with the directories above it, and returns its path.
    std::string write(const std::string& name, const std::string& contents) const {
        const std::filesystem::path file = m_directory / path_from_utf8(name);
        std::filesystem::create_directories(file.parent_path());
        std::filesystem::remove(file);  // some file systems wait for the disk when a file is emptied instead
        std::ofstream(file, std::ios::binary) << contents;
        return path(name);
    }

    /// How many files are below the directory: for finding what was left over.
    std::size_t file_count() const {
        std::size_t count = 0;
        for (const auto& entry : std::filesystem::recursive_directory_iterator(m_directory)) {
            count += std::filesystem::is_regular_file(entry.symlink_status()) ? 1U : 0U;
        }
        return count;
    }

private:
    std::filesystem::path m_directory;
};

inline std::string read_file(const std::filesystem::path& path) {
    std::ifstream file = open_replaced_file(path);
    EXPECT_TRUE(file.is_open()) << path;
    std::ostringstream text;
    text << file.rdbuf();  // by blocks: without the optimiser, a character at a time takes a fifth of what tests take
    return text.str();
}

inline std::string read_file(const std::string& path) {
    return read_file(path_from_utf8(path));
}

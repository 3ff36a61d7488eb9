#pragma once

/// \file
/// Files that benchmarks write, in the build tree: on a disk, which a replaced file must reach.

#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>

/// The path of a file of that name, without one of an earlier run.
inline std::string new_scratch_file(const std::string& name) {
    const std::filesystem::path directory(BENCHMARK_SCRATCH_DIR);
    std::filesystem::create_directories(directory);
    const std::filesystem::path path = directory / name;
    std::filesystem::remove_all(path);
    return path.string();
}

inline void write_text(const std::string& path, const std::string& text) {
    std::ofstream file(path, std::ios::binary);
    file << text;
    file.close();
    if (!file) {
        throw std::runtime_error(path + ": cannot be written");
    }
}

inline std::string read_text(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    std::string text(static_cast<std::size_t>(std::filesystem::file_size(path)), '\0');
    if (!file.read(text.data(), static_cast<std::streamsize>(text.size()))) {
        throw std::runtime_error(path + ": cannot be read");
    }
    return text;
}

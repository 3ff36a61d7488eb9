#pragma once

/// \file
/// What std::filesystem tells of files, and does with them. On Windows it does not for paths that are free of the length
/// limit, which have a question mark: the C library that it stands on there takes that for a wildcard, and finds no file.

#include <filesystem>
#include <system_error>

#if defined(_WIN32)

/// As std::filesystem::status; of a link it tells what the link is: a file or a directory.
std::filesystem::file_type file_type_of(const std::filesystem::path& path, std::error_code& error);

/// As std::filesystem::equivalent, for two that exist.
bool are_same_file(const std::filesystem::path& one, const std::filesystem::path& other, std::error_code& error);

/// As std::filesystem::remove of a file.
void remove_file(const std::filesystem::path& file, std::error_code& error);

/// As std::filesystem::create_directory.
bool make_directory(const std::filesystem::path& directory, std::error_code& error);

/// As std::filesystem::create_directories.
void make_directories(const std::filesystem::path& directory, std::error_code& error);

#else

inline std::filesystem::file_type file_type_of(const std::filesystem::path& path, std::error_code& error) {
    return std::filesystem::status(path, error).type();
}

inline bool are_same_file(const std::filesystem::path& one, const std::filesystem::path& other,
                          std::error_code& error) {
    return std::filesystem::equivalent(one, other, error);
}

inline void remove_file(const std::filesystem::path& file, std::error_code& error) {
    std::filesystem::remove(file, error);
}

inline bool make_directory(const std::filesystem::path& directory, std::error_code& error) {
    return std::filesystem::create_directory(directory, error);
}

inline void make_directories(const std::filesystem::path& directory, std::error_code& error) {
    std::filesystem::create_directories(directory, error);
}

#endif

/// Removes the directory with all that is in it, as far as that can be done; links are not followed.
void remove_with_contents(const std::filesystem::path& directory) noexcept;

inline bool is_a_directory(const std::filesystem::path& path) {
    std::error_code ignored;
    return file_type_of(path, ignored) == std::filesystem::file_type::directory;
}

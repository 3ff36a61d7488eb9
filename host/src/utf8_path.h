#pragma once

/// \file
/// Between UTF-8 texts and the system's paths.

#include <filesystem>
#include <string>

inline std::filesystem::path path_from_utf8(const std::string& text) {
    const auto* bytes = reinterpret_cast<const char8_t*>(text.data());
    return {bytes, bytes + text.size()};
}

inline std::string utf8_from_path(const std::filesystem::path& path) {
    const std::u8string text = path.u8string();
    return {reinterpret_cast<const char*>(text.data()), text.size()};
}

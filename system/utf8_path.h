#pragma once

/// \file
/// Between UTF-8 texts and the system's paths. Where paths are plain bytes, they pass as they are. Where paths are wide
/// characters, what cannot be converted becomes the replacement character, so that such a path names nothing.

#include <filesystem>
#include <string>

#if defined(_WIN32)
#include "wide_text.h"
#endif

inline std::filesystem::path path_from_utf8(const std::string& text) {
#if defined(_WIN32)
    return wide_from_utf8(text);
#else
    return text;
#endif
}

inline std::string utf8_from_path(const std::filesystem::path& path) {
#if defined(_WIN32)
    return utf8_from_wide(path.native());
#else
    return path.native();
#endif
}

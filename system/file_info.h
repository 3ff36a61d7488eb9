#pragma once

/// \file
/// The text that may stand beside a file, FILE.info, in lines `key = value`: by a digest it tells which file it belongs to
/// (docs/formats.md).

#include <cstddef>
#include <filesystem>
#include <span>
#include <string>
#include <string_view>

#include "file_reader.h"
#include "text_lines.h"

/// The key that only stands there while a file is replaced: the digest of the one that goes.
inline constexpr std::string_view REPLACED_DIGEST_KEY = "replaces_sha256";

// The keys of the digests of what there is beside such a text.
inline constexpr std::string_view DATABASE_DIGEST_KEY = "database_sha256";
inline constexpr std::string_view CONTAINER_DIGEST_KEY = "container_sha256";

/// No file that has such a text comes near. Larger ones are not compared with it.
inline constexpr std::size_t LARGEST_FILE_WITH_INFO = std::size_t{1} << 28;

/// No such text comes near. Larger ones cannot be read.
inline constexpr std::size_t LARGEST_INFO = std::size_t{1} << 20;

/// The path of the text that belongs to a file.
inline std::string info_file_of(const std::string& file) {
    return file + ".info";
}

/// What a text tells of the file beside it.
enum class INFO_STATE {
    MATCHES,    ///< this is the file
    OLDER,      ///< this is the one that was to be replaced when that was interrupted
    MISSING,    ///< there is no text: nothing is known, and nothing wrong
    DIFFERS,    ///< another one: either is damaged, or was replaced without the other
    UNREADABLE  ///< the text cannot be read, or is none
};

/// Whether that is a reason to doubt the file.
inline bool is_doubtful(INFO_STATE state) {
    return state == INFO_STATE::DIFFERS || state == INFO_STATE::UNREADABLE;
}

/// The part of a text without the white space at its two ends.
std::string_view without_margins(std::string_view text);

/// Calls `use` with key and value of each line that has both.
template <class USE>
void for_each_info_value(std::string_view info, USE use) {
    for_each_line(info, [&use](std::string_view line) {
        const std::size_t equals = line.find('=');
        if (equals != std::string_view::npos) {
            use(without_margins(line.substr(0, equals)), without_margins(line.substr(equals + 1)));
        }
    });
}

/// What a text tells of a file with that digest; `digest_key` is its key.
INFO_STATE judge_info(std::string_view info, std::string_view digest_key, std::string_view digest);

/// A file and the text beside it, as they have been at one moment.
struct FILE_WITH_INFO {
    READ_RESULT info_result = READ_RESULT::ABSENT;
    std::string info;
    READ_RESULT file_result = READ_RESULT::ABSENT;  ///< the file is only read where there is a text
    std::string file;

    std::span<const unsigned char> file_bytes() const {
        return {reinterpret_cast<const unsigned char*>(file.data()), file.size()};
    }

    /// What the text tells of the file. `digest_of` gives the digest of bytes. Nothing is told of a file that cannot be
    /// read: who reads it finds that out.
    template <class DIGEST>
    INFO_STATE state(std::string_view digest_key, DIGEST digest_of) const {
        if (info_result == READ_RESULT::FAILED) {
            return INFO_STATE::UNREADABLE;
        }
        return info_result == READ_RESULT::ABSENT || file_result != READ_RESULT::READ
                   ? INFO_STATE::MISSING
                   : judge_info(info, digest_key, digest_of(file_bytes()));
    }
};

/// Reads both, also while somebody replaces them. When that goes on and on, it is as if there were no text.
FILE_WITH_INFO read_with_info(const std::filesystem::path& file, const std::filesystem::path& info);

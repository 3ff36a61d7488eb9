#pragma once

/// \file
/// What the packed encoding is made of, and what differs between the two databases that use it.

#include <string_view>

#include "pgmdev_manager_type.h"
#include "pgmdev_types.h"

// The file: magic, stamp, size of the decompressed body, the body as one zlib stream, checksum slot.
inline constexpr DWORD PACKED_MAGIC_SIZE = 8;
inline constexpr DWORD PACKED_STAMP_SIZE = 32;
inline constexpr DWORD PACKED_HEAD_SIZE = PACKED_MAGIC_SIZE + PACKED_STAMP_SIZE + 4;
inline constexpr DWORD PACKED_CHECKSUM_SIZE = 2;

// The body: version, record count, member count, the records with "END1" behind each, "END2".
inline constexpr DWORD PACKED_BODY_VERSION = 1;
inline constexpr DWORD PACKED_BODY_HEAD_SIZE = 3 * 4;
inline constexpr DWORD PACKED_MARKER_SIZE = 4;
inline constexpr std::string_view PACKED_RECORD_END = "END1";
inline constexpr std::string_view PACKED_DATABASE_END = "END2";

/// The longest body. Tables of all chips and devices that there are stay far below it; what states more is refused before
/// memory is taken for it, and never written.
inline constexpr DWORD PACKED_BODY_MAX = DWORD{128} << 20;
inline constexpr const char* PACKED_BODY_TOO_LONG = "memory_size <= PACKED_BODY_MAX";

/// The longest text that a one-byte length can state.
inline constexpr std::size_t PACKED_TEXT_MAX = 255;

/// A set of tags.
constexpr DWORD tag_set(PGMDEV_MANAGER_TYPE tag) {
    return DWORD{1} << tag;
}
constexpr bool is_tag_in(DWORD tags, BYTE tag) {
    return tag < 32 && (tags >> tag & 1) != 0;
}

/// What differs between the databases.
struct PACKED_FORMAT {
    const char* file;  ///< that reports name

    std::string_view magic;
    std::string_view stamp;
    DWORD members;      ///< of a record, whatever a body states
    DWORD dword_tags;   ///< tags accepted before a 4-byte value
    DWORD string_tags;  ///< tags accepted before a text

    // The texts of the failed checks.
    const char* missing_file;
    const char* wrong_magic;
    const char* wrong_version;
    const char* wrong_counts;
    const char* wrong_dword_tag;
    const char* wrong_string_tag;
};

extern const PACKED_FORMAT DEV_INFO_FORMAT;
extern const PACKED_FORMAT FLASH_FORMAT;

#pragma once

/// \file
/// A packed database, taken apart step by step, with what was found at each step. It reads damaged files as far as they
/// go: every read is bounded.

#include <string>
#include <vector>

#include "tables/packed_schema.h"

/// What the packed format is made of.
inline constexpr std::size_t PACKED_MAGIC_LENGTH = 8;
inline constexpr std::size_t PACKED_STAMP_LENGTH = 32;
inline constexpr std::size_t PACKED_HEAD_LENGTH = PACKED_MAGIC_LENGTH + PACKED_STAMP_LENGTH + 4;
inline constexpr std::size_t PACKED_CHECKSUM_LENGTH = 2;

/// One thing that was looked at.
struct TABLE_CHECK {
    enum OUTCOME { PASSED, FAILED, SKIPPED };

    std::string name;
    OUTCOME outcome;
    std::string detail;  ///< what was found, or why it was not looked at
};

/// A file up to its payload.
struct PACKED_FILE {
    std::vector<BYTE> bytes;
    std::string stamp;          ///< "" when the file is too short
    DWORD stated_size = 0;      ///< of the payload, as the head states it
    std::vector<BYTE> payload;  ///< none when the stream is damaged
    std::vector<TABLE_CHECK> checks;
};

/// Takes the bytes of a file apart. What is wrong with them is among the checks.
PACKED_FILE open_packed_file(std::vector<BYTE> bytes, const PACKED_SCHEMA& schema);

/// The number of 4 bytes at that place, which must be there.
DWORD packed_dword(const BYTE* bytes);

#pragma once

/// \file
/// A packed database, taken apart step by step, with what was found at each step. It reads damaged files as far as they
/// go: every read is bounded.

#include <string>
#include <vector>

#include "files/database.h"
#include "tables/packed_schema.h"

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

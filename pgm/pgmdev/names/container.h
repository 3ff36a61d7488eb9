#pragma once

/// \file
/// The container of the data sets that are compiled into the library: a zlib stream of a magic, a body and a CRC-32.

#include <memory>

#include "pgmdev_types.h"

/// Source file that the reports of the two stores name.
inline constexpr const char* DDB_SOURCE = "pgm/pgmdev/pgmdev_ddb_mgr";

inline constexpr DWORD DDB_MAGIC_SIZE = 10;
inline constexpr DWORD DDB_CRC_SIZE = 4;

/// A data set as it is compiled in.
struct DDB_DATA_SET {
    const BYTE* stream;   ///< zlib stream
    DWORD stream_length;  ///< its length in bytes
    DWORD length;         ///< exact decompressed length

    // The texts of the failed checks.
    const char* bad_stream;
    const char* bad_length;
};

/// The two data sets of this build.
DDB_DATA_SET ddb_grammar_data();
DDB_DATA_SET ddb_opn_data();

/// A decompressed container whose checks have passed.
struct DDB_CONTAINER {
    std::unique_ptr<BYTE[]> data;
    DWORD size = 0;

    DWORD body_end() const { return size - DDB_CRC_SIZE; }
};

/// Decompresses and checks a data set. The buffer goes on for some bytes of 0 behind `size`.
DDB_CONTAINER ddb_open(const DDB_DATA_SET& set);

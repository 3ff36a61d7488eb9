#pragma once

/// \file
/// The data compiled into the library. The build generates the definitions from the catalog; a test may link its own.

#include <cstdint>

#include "pgmdev_types.h"

extern const BYTE PGMDDB_GRAMMAR_DATA[];       ///< the device-name grammar, one zlib stream
extern const DWORD PGMDDB_GRAMMAR_CMP_LENGTH;  ///< its length in bytes
extern const DWORD PGMDDB_GRAMMAR_LENGTH;      ///< its exact decompressed length in bytes
extern const BYTE PGMDDB_OPN_DATA[];           ///< the ordering-code list, one zlib stream
extern const DWORD PGMDDB_OPN_CMP_LENGTH;      ///< its length in bytes
extern const DWORD PGMDDB_OPN_LENGTH;          ///< its exact decompressed length in bytes

// What the generator has found in these streams.
extern const char PGMDDB_GRAMMAR_TEXT[];            ///< the decompressed grammar without its CRC
extern const std::uint32_t PGMDDB_GRAMMAR_INDEX[];  ///< an index of it (grammar_index.h)
extern const DWORD PGMDDB_GRAMMAR_INDEX_LENGTH;     ///< how many numbers that are; 0: there is none
extern const std::uint64_t PGMDDB_GRAMMAR_DIGEST;   ///< the digest of the stream that both are of
extern const DWORD PGMDDB_GRAMMAR_CRC;              ///< the CRC in that stream
extern const DWORD PGMDDB_OPN_NUMBERS[];            ///< the part numbers of the list
extern const DWORD PGMDDB_OPN_NUMBERS_LENGTH;       ///< how many there are; 0: there are none
extern const std::uint64_t PGMDDB_OPN_DIGEST;       ///< the digest of the stream that they are of
extern const DWORD PGMDDB_OPN_CRC;                  ///< the CRC in that stream

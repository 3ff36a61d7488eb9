#pragma once

/// \file
/// The data compiled into the library. The build generates the definitions from the catalog; a test may link its own.

#include <cstdint>

#include "pgmdev_types.h"

extern const BYTE PGMDDB_GRAMMAR_DATA[];            ///< the device-name grammar, one zlib stream
extern const DWORD PGMDDB_GRAMMAR_CMP_LENGTH;       ///< its length in bytes
extern const DWORD PGMDDB_GRAMMAR_LENGTH;           ///< its exact decompressed length in bytes
extern const std::uint32_t PGMDDB_GRAMMAR_INDEX[];  ///< an index of it (grammar_index.h)
extern const DWORD PGMDDB_GRAMMAR_INDEX_LENGTH;     ///< how many numbers that are; 0: there is none
extern const DWORD PGMDDB_GRAMMAR_INDEXED_CRC;      ///< the CRC of the grammar that it is of
extern const BYTE PGMDDB_OPN_DATA[];                ///< the ordering-code list, one zlib stream
extern const DWORD PGMDDB_OPN_CMP_LENGTH;           ///< its length in bytes
extern const DWORD PGMDDB_OPN_LENGTH;               ///< its exact decompressed length in bytes

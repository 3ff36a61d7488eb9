#pragma once

/// \file
/// The data compiled into the library. The build generates the definitions from the catalog; a test may link its own.

#include "pgmdev_types.h"

extern const BYTE PGMDDB_GRAMMAR_DATA[];       ///< the device-name grammar, one zlib stream
extern const DWORD PGMDDB_GRAMMAR_CMP_LENGTH;  ///< its length in bytes
extern const DWORD PGMDDB_GRAMMAR_LENGTH;      ///< its exact decompressed length in bytes
extern const BYTE PGMDDB_OPN_DATA[];           ///< the ordering-code list, one zlib stream
extern const DWORD PGMDDB_OPN_CMP_LENGTH;      ///< its length in bytes
extern const DWORD PGMDDB_OPN_LENGTH;          ///< its exact decompressed length in bytes

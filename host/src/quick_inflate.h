#pragma once

/// \file
/// Inflating whole buffers faster than zlib does, where the build has what it takes.

#include "host_types.h"

/// Decompresses the zlib stream at the beginning of `source` as zlib_uncompress does, or gives up: false. Then
/// `destination` holds anything, `destination_length` is what it was, and nothing is said about the stream.
bool quick_inflate(BYTE* destination, DWORD* destination_length, const BYTE* source, DWORD source_length);

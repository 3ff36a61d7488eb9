#pragma once

/// \file
/// zlib on whole buffers.
///
/// `destination_length` holds the capacity of `destination` on entry and the produced length on return. The result is
/// ZLIB_OK, or zlib's own error code. Neither call reads or writes outside the given lengths.

#include "host_export.h"
#include "host_types.h"

inline constexpr int ZLIB_OK = 0;

/// Compresses `source` into one zlib stream with zlib's default settings.
HOST_EXPORT int zlib_compress(BYTE* destination, DWORD* destination_length, const BYTE* source, DWORD source_length);

/// Decompresses the zlib stream at the beginning of `source`. Bytes behind the end of the stream are ignored; a stream
/// that does not end, or does not fit, is an error. A build with libdeflate also takes some streams that zlib refuses and
/// no compressor writes: with incomplete or superfluous codes, but a sound Adler-32 of their contents.
HOST_EXPORT int zlib_uncompress(BYTE* destination, DWORD* destination_length, const BYTE* source, DWORD source_length);

#pragma once

/// \file
/// The frame around a packed body: compression, and the file with its head and checksum slot.

#include <memory>

#include "fio.h"
#include "packed/format.h"
#include "pgmdev_types.h"

using BYTE_BUFFER = std::unique_ptr<BYTE[]>;

/// A decompressed body; null when there is none.
struct PACKED_BODY {
    BYTE_BUFFER data;
    DWORD size = 0;
};

/// The checksum of a packed file. It is 0 whatever the data: existing files carry 0, and no reader looks at it.
WORD packed_checksum(const BYTE* data, unsigned long size);

/// `data` with the bytes from `offset` on, up to `count`, replaced by their zlib stream; `out_count` receives the
/// length.
BYTE_BUFFER packed_compress(const BYTE* data, DWORD offset, DWORD count, DWORD& out_count, const PACKED_FORMAT& format);

/// The contents of a zlib stream, which must be exactly `original_size` bytes. Memory is taken for what a stream of
/// that length can hold, not for what `original_size` claims.
BYTE_BUFFER packed_decompress(const BYTE* data, DWORD compressed_size, DWORD original_size,
                              const PACKED_FORMAT& format);

/// Reads a packed file up to its decompressed body. A file with another magic is reported and gives a null body;
/// everything else that is wrong ends the operation.
PACKED_BODY read_packed_file(const FIO_PATH& path, const PACKED_FORMAT& format);

/// Compresses a file image (head and plain body, `count` bytes) and replaces the file in one step. Not being able to is
/// reported with "status".
void write_packed_file(const FIO_PATH& path, const BYTE* image, DWORD count, const PACKED_FORMAT& format);

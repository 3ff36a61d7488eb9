#pragma once

/// \file
/// Decompression of a whole zlib stream whose contents are claimed to have some size.

#include <memory>

#include "pgmdev_types.h"

/// Deflate cannot make a stream shorter than about 1/1032 of its contents: a length and distance pair stands for at
/// most 258 bytes and takes at least 2 bits.
inline constexpr QWORD DEFLATE_LARGEST_RATIO = 1032;

/// What became of a stream.
struct INFLATED {
    bool good;                     ///< the stream was sound and fitted
    std::unique_ptr<BYTE[]> data;  ///< its contents, and bytes of 0 up to the capacity that was given to it
    DWORD length;                  ///< of the contents
    bool longer;                   ///< the stream was sound as far as it fitted, and `data` is its beginning
};

/// Decompresses the zlib stream at the beginning of `stream`, whose contents may have up to `capacity` bytes. Memory is
/// taken for what a stream of that length can hold, not for what `capacity` claims; a stream that claims more than it
/// holds is thus found out by the length of its contents, as with the full capacity.
INFLATED inflate_bounded(const BYTE* stream, DWORD stream_length, QWORD capacity);

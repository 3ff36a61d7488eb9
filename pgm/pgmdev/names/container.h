#pragma once

/// \file
/// The container of the data sets that are compiled into the library: a zlib stream of a magic, a body and a CRC-32.

#include <cstdint>
#include <memory>
#include <span>

#include "pgmdev_types.h"

inline constexpr DWORD CONTAINER_MAGIC_SIZE = 10;
inline constexpr DWORD CONTAINER_CRC_SIZE = 4;

/// A data set as it is compiled in.
struct COMPILED_DATA_SET {
    const BYTE* stream;   ///< zlib stream
    DWORD stream_length;  ///< its length in bytes
    DWORD length;         ///< exact decompressed length

    // The texts of the failed checks.
    const char* bad_stream;
    const char* bad_length;

    // What the generator has found in a stream, and proven: whoever has it need not decompress that stream.
    std::uint64_t known_stream = 0;             ///< the digest of that stream
    DWORD crc = 0;                              ///< in it
    const char* text = nullptr;                 ///< of a grammar: decompressed, without the CRC
    std::span<const std::uint32_t> index = {};  ///< of its text (grammar_index.h); none: nothing is known of it
    std::span<const DWORD> numbers = {};        ///< of a list of ordering codes; none: likewise
};

/// Whether the stream is the one of which something is known.
bool is_known(const COMPILED_DATA_SET& set);

/// The two data sets of this build.
COMPILED_DATA_SET grammar_data_set();
COMPILED_DATA_SET opn_data_set();

/// A decompressed container whose checks have passed.
struct DATA_CONTAINER {
    std::unique_ptr<BYTE[]> data;
    DWORD size = 0;

    DWORD body_end() const { return size - CONTAINER_CRC_SIZE; }
};

/// Decompresses and checks a data set. The buffer goes on for some bytes of 0 behind `size`.
DATA_CONTAINER open_container(const COMPILED_DATA_SET& set);

/// The CRC at the end of a data set. Of a stream that is not known it is that of the container, whose checks pass.
DWORD crc_of(const COMPILED_DATA_SET& set);

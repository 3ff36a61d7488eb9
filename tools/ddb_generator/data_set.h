#pragma once

/// \file
/// The data sets that are compiled into the library: a magic, a body and a CRC, packed by zlib.

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "grammar.h"

using BYTES = std::vector<std::uint8_t>;

/// What a data set begins with.
inline constexpr std::string_view DATA_SET_MAGIC = "PGMDEV_DDB";

/// A packed data set with its unpacked length and its CRC.
struct DATA_SET {
    BYTES packed;
    std::size_t unpacked_length = 0;
    std::uint32_t crc = 0;
};

/// CRC-32/BZIP2: polynomial 0x04C11DB7, most significant bit first, preset and complemented by ones.
std::uint32_t crc32_msb_first(const std::uint8_t* data, std::size_t size);

/// The eight tables: key, entries and a further 0 for each record, a further 0 after each table; all texts end with 0.
BYTES encode_grammar(const GRAMMAR& grammar);

/// The part numbers by ordering-code index: their count in 32 bits, then each in groups of 7 bits, the lowest first,
/// the top bit telling that another group follows.
BYTES encode_ordering_codes(const std::vector<std::uint32_t>& parts);

/// Puts a body between magic and CRC, and packs it.
DATA_SET seal(const BYTES& body);

/// Unpacks a data set and checks what encloses its body; throws std::runtime_error when it is not as it must be.
BYTES unseal(const DATA_SET& data_set);

// The inverses of the encoders; they throw std::runtime_error for what the encoders do not write. The grammar is compared text
// by text: a second one would take as much memory as the first, and longer than all the comparing.

/// Throws std::runtime_error unless the body has that grammar, and nothing else.
void prove_grammar(const BYTES& body, const GRAMMAR& grammar);

std::vector<std::uint32_t> decode_ordering_codes(const BYTES& body);

#pragma once

/// \file
/// Any bytes as the payload of a packed database: loading ends in a report, or in records.

#include <zlib.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "fio.h"
#include "reports.h"
#include "scratch_files.h"

inline void append_number(std::string& bytes, std::size_t value, unsigned size) {
    for (unsigned i = 0; i < size; ++i) {
        bytes += static_cast<char>(value >> (8 * i));
    }
}

/// The payload as a file with that magic and stamp. It is stored, not shortened, which would take longer than reading it;
/// streams have a fuzzer of their own.
inline std::string packed_file(std::string_view magic, std::string_view stamp, const std::uint8_t* payload,
                               std::size_t size) {
    constexpr std::size_t LONGEST_BLOCK = 0xFFFF;
    std::string file(magic);
    file += stamp;
    append_number(file, size, 4);
    file += "\x78\x01";  // the head of a stream
    for (std::size_t begin = 0; begin < size; begin += LONGEST_BLOCK) {
        const std::size_t length = std::min(size - begin, LONGEST_BLOCK);
        file += begin + length == size ? '\1' : '\0';
        append_number(file, length, 2);
        append_number(file, ~length, 2);
        file.append(reinterpret_cast<const char*>(payload) + begin, length);
    }
    const uLong check = adler32(adler32(0, nullptr, 0), payload, static_cast<uInt>(size));
    for (const unsigned shift : {24U, 16U, 8U, 0U}) {
        file += static_cast<char>(check >> shift);
    }
    return file.append(2, '\0');  // the checksum
}

/// Loads the payload, as a file, through the bounded reader. LOADER derives from the database's manager, starts empty, and
/// makes that manager's loading of a file public as `load`.
template <class LOADER>
void load_payload(std::string_view magic, std::string_view stamp, const std::uint8_t* payload, std::size_t size) {
    if (size == 0) {
        return;
    }
    up_to_a_report([&] {
        const std::string file = packed_file(magic, stamp, payload, size);
        LOADER().load(FIO_PATH(scratch_files().write("database.pcf", file)));
    });
}

#pragma once

/// \file
/// Any bytes as the payload of a packed database: loading ends in a report, or in records.

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "fio.h"
#include "reports.h"
#include "scratch_files.h"

/// The payload as a file with that magic and stamp. MANAGER derives from the database's manager; it starts empty, and makes
/// that manager's `compress_data` public.
template <class MANAGER>
std::string packed_file(std::string_view magic, std::string_view stamp, const std::uint8_t* payload, std::size_t size) {
    std::vector<BYTE> image(magic.begin(), magic.end());
    image.insert(image.end(), stamp.begin(), stamp.end());
    for (unsigned shift = 0; shift < 32; shift += 8) {
        image.push_back(static_cast<BYTE>(size >> shift));
    }
    const auto head = static_cast<DWORD>(image.size());
    image.insert(image.end(), payload, payload + size);
    DWORD length = 0;
    BYTE* packed = MANAGER().compress_data(image.data(), head, static_cast<DWORD>(image.size()), length);
    std::string file(reinterpret_cast<const char*>(packed), length);
    delete[] packed;
    return file.append(2, '\0');  // the checksum
}

/// Loads the payload, as a file, through the bounded reader: MANAGER's loading of a file is public as `load`.
template <class MANAGER>
void load_payload(std::string_view magic, std::string_view stamp, const std::uint8_t* payload, std::size_t size) {
    if (size == 0) {
        return;
    }
    up_to_a_report([&] {
        const std::string file = packed_file<MANAGER>(magic, stamp, payload, size);
        MANAGER().load(FIO_PATH(scratch_files().write("database.pcf", file)));
    });
}

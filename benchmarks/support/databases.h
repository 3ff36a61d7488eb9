#pragma once

/// \file
/// The limit for loading a packed database: its file is read, and its body inflated.

#include <libdeflate.h>
#include <zlib.h>

#include <cstring>
#include <memory>
#include <stdexcept>
#include <string>

#include "packed/format.h"
#include "pgmdev_types.h"
#include "support/scratch.h"

enum class INFLATER { ZLIB, LIBDEFLATE };

template <INFLATER INFLATER_USED>
std::unique_ptr<BYTE[]> read_and_inflate(const std::string& path) {
    const std::string file = read_text(path);
    DWORD size = 0;  // the numbers of this machine are those of the file
    std::memcpy(&size, file.data() + PACKED_HEAD_SIZE - sizeof size, sizeof size);
    auto body = std::make_unique_for_overwrite<BYTE[]>(size);
    const auto* stream = reinterpret_cast<const BYTE*>(file.data()) + PACKED_HEAD_SIZE;
    const std::size_t length = file.size() - PACKED_HEAD_SIZE - PACKED_CHECKSUM_SIZE;
    bool inflated = false;
    if constexpr (INFLATER_USED == INFLATER::ZLIB) {
        uLongf body_size = size;
        inflated = uncompress(body.get(), &body_size, stream, length) == Z_OK;
    } else {
        const std::unique_ptr<libdeflate_decompressor, void (*)(libdeflate_decompressor*)> inflater(
            libdeflate_alloc_decompressor(), libdeflate_free_decompressor);
        inflated =
            libdeflate_zlib_decompress(inflater.get(), stream, length, body.get(), size, nullptr) == LIBDEFLATE_SUCCESS;
    }
    if (!inflated) {
        throw std::runtime_error(path + ": not inflated");
    }
    return body;
}

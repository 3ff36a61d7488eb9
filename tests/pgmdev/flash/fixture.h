#pragma once

/// \file
/// Flash records, payloads and files as the tests themselves write and read them: written plainly from the description
/// of the format, with zlib used directly, so that they can stand against the library's own code.

#include <zlib.h>

#include <stdexcept>
#include <string>
#include <vector>

#include "pgmdev/flash/columns.h"
#include "pgmdev_sfl_flash_info.h"

namespace flash_reference {

constexpr const char* MAGIC = "PGMIO_FM";
constexpr const char* STAMP = "e58bc25311bf5303874d34bcafcaa4c1";

/// What a packed file begins with.
inline std::string head() {
    return std::string(MAGIC) + STAMP;
}

inline CELLS fields(const PGMDEV_SFL_FLASH_INFO& r) {
    CELLS all;
    for (const COLUMN& column : COLUMNS) {
        all.push_back(column.field(r));
    }
    return all;
}

inline std::string record(const PGMDEV_SFL_FLASH_INFO& r) {
    std::string bytes;
    for (const std::string& field : fields(r)) {
        bytes += field;
    }
    return bytes + "END1";
}

inline std::string payload(const std::vector<PGMDEV_SFL_FLASH_INFO>& records) {
    std::string bytes = le32(1) + le32(records.size()) + le32(MEMBERS);
    for (const auto& r : records) {
        bytes += record(r);
    }
    return bytes + "END2";
}

inline std::string deflated(const std::string& bytes) {
    uLongf length = compressBound(static_cast<uLong>(bytes.size()));
    std::string stream(length, '\0');
    if (compress(reinterpret_cast<Bytef*>(stream.data()), &length, reinterpret_cast<const Bytef*>(bytes.data()),
                 static_cast<uLong>(bytes.size())) != Z_OK) {
        throw std::runtime_error("compress");
    }
    stream.resize(length);
    return stream;
}

inline std::string inflated(const std::string& stream, std::size_t size) {
    std::string bytes(size, '\0');
    auto length = static_cast<uLongf>(size);
    if (uncompress(reinterpret_cast<Bytef*>(bytes.data()), &length, reinterpret_cast<const Bytef*>(stream.data()),
                   static_cast<uLong>(stream.size())) != Z_OK ||
        length != size) {
        throw std::runtime_error("uncompress");
    }
    return bytes;
}

/// A zlib stream of bytes and behind them as many of 0 as make `size`, put together from streams of pieces.
inline std::string deflated_with_zeros(const std::string& bytes, std::size_t size) {
    constexpr std::size_t PIECE = std::size_t{1} << 20;
    const auto piece_of = [](const std::string& contents, int flush) {
        z_stream stream{};
        if (deflateInit2(&stream, 1, Z_DEFLATED, -MAX_WBITS, 8, Z_DEFAULT_STRATEGY) != Z_OK) {
            throw std::runtime_error("deflateInit2");
        }
        std::string from = contents;
        std::string piece(deflateBound(&stream, static_cast<uLong>(contents.size())) + 64, '\0');
        stream.next_in = reinterpret_cast<Bytef*>(from.data());
        stream.avail_in = static_cast<uInt>(from.size());
        stream.next_out = reinterpret_cast<Bytef*>(piece.data());
        stream.avail_out = static_cast<uInt>(piece.size());
        deflate(&stream, flush);
        piece.resize(stream.total_out);
        deflateEnd(&stream);
        return piece;
    };
    const auto adler_of = [](const std::string& contents) {
        return adler32(1, reinterpret_cast<const Bytef*>(contents.data()), static_cast<uInt>(contents.size()));
    };
    std::string whole = "\x78\x01" + piece_of(bytes, Z_FULL_FLUSH);
    uLong adler = adler_of(bytes);
    const std::string zeros(PIECE, '\0');
    const std::string full = piece_of(zeros, Z_FULL_FLUSH);
    std::size_t rest = size - bytes.size();
    for (; rest >= PIECE; rest -= PIECE) {
        whole += full;
        adler = adler32_combine(adler, adler_of(zeros), static_cast<z_off_t>(PIECE));
    }
    const std::string last(rest, '\0');
    whole += piece_of(last, Z_FINISH);
    adler = adler32_combine(adler, adler_of(last), static_cast<z_off_t>(rest));
    for (const int shift : {24, 16, 8, 0}) {
        whole += static_cast<char>(adler >> shift & 0xFF);
    }
    return whole;
}

/// A packed file around a payload.
inline std::string file(const std::string& payload_bytes) {
    return head() + le32(payload_bytes.size()) + deflated(payload_bytes) + std::string(2, '\0');
}

/// A record that differs from a cleared one in every member.
inline PGMDEV_SFL_FLASH_INFO sample(const std::string& name = "SAMPLE") {
    PGMDEV_SFL_FLASH_INFO r;
    r.manufacturer_name = "Maker";
    r.device_name = name;
    r.memory_id = 0x18;
    r.memory_id_index = 2;
    r.memory_type = 0xBA;
    r.memory_type_index = 1;
    r.mfc_id = 0x20;
    r.mfc_id_index = 0;
    r.orvane_id = 24;
    r.default_dev = true;
    r.ini = "NONE";
    r.extended_mode = r.micron_flow = r.spansion_flow = r.startup_protected = r.aai_mode = r.flag_status = true;
    r.die_count = 3;
    r.device_bit_size = 0x08000000;
    r.device_sector_byte = 0x00010000;
    r.half_size = r.byte4_addressing = r.sdm_support = true;
    r.bulk_erase_time = 250;
    r.sec_erase_time = 6;
    r.program_utime = 5000;
    r.protection_mask = 0x5C;
    r.protection_value = 0x4C;
    r.unprotect_value = 0x40;
    r.protection_division = 15;
    r.bottom_value = 0x20;
    r.asc_voltage = "3.3V";
    return r;
}

}  // namespace flash_reference

#pragma once

/// \file
/// Flash records, payloads and files as the tests themselves write and read them: written plainly from the description
/// of the format, with zlib used directly, so that they can stand against the library's own code.

#include <zlib.h>

#include <stdexcept>
#include <string>
#include <vector>

#include "pgmdev_sfl_flash_info.h"

namespace flash_reference {

inline const std::string MAGIC = "PGMIO_FM";
inline const std::string STAMP = "e58bc25311bf5303874d34bcafcaa4c1";

inline std::string le32(unsigned long long value) {
    std::string bytes;
    for (int i = 0; i < 4; ++i) {
        bytes += static_cast<char>(value >> (8 * i) & 0xFF);
    }
    return bytes;
}

inline std::string tagged_text(const std::string& text) {
    return std::string(1, '\2') + static_cast<char>(text.size() & 0xFF) + text;
}
inline std::string tagged_bool(bool value) {
    return {'\3', value ? '\1' : '\0'};
}
inline std::string tagged_byte(unsigned value) {
    return {'\4', static_cast<char>(value)};
}
inline std::string tagged_dword(unsigned long long value) {
    return '\6' + le32(value);
}

/// The 33 members of a record, each spelled out.
inline std::vector<std::string> fields(const PGMDEV_SFL_FLASH_INFO& r) {
    return {tagged_text(r.manufacturer_name), tagged_text(r.device_name),      tagged_bool(r.silicon_id),
            tagged_byte(r.memory_id),         tagged_byte(r.memory_id_index),  tagged_byte(r.memory_type),
            tagged_byte(r.memory_type_index), tagged_byte(r.mfc_id),           tagged_byte(r.mfc_id_index),
            tagged_byte(r.orvane_id),         tagged_bool(r.default_dev),      tagged_text(r.ini),
            tagged_bool(r.extended_mode),     tagged_bool(r.micron_flow),      tagged_bool(r.spansion_flow),
            tagged_bool(r.startup_protected), tagged_bool(r.aai_mode),         tagged_bool(r.flag_status),
            tagged_byte(r.die_count),         tagged_dword(r.device_bit_size), tagged_dword(r.device_sector_byte),
            tagged_bool(r.half_size),         tagged_bool(r.byte4_addressing), tagged_dword(r.bulk_erase_time),
            tagged_dword(r.sec_erase_time),   tagged_dword(r.program_utime),   tagged_byte(r.protection_mask),
            tagged_byte(r.protection_value),  tagged_byte(r.unprotect_value),  tagged_byte(r.protection_division),
            tagged_byte(r.bottom_value),      tagged_bool(r.sdm_support),      tagged_text(r.asc_voltage)};
}

inline std::string record(const PGMDEV_SFL_FLASH_INFO& r) {
    std::string bytes;
    for (const std::string& field : fields(r)) {
        bytes += field;
    }
    return bytes + "END1";
}

inline std::string payload(const std::vector<PGMDEV_SFL_FLASH_INFO>& records) {
    std::string bytes = le32(1) + le32(records.size()) + le32(33);
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

/// A packed file around a payload.
inline std::string file(const std::string& payload_bytes) {
    return MAGIC + STAMP + le32(payload_bytes.size()) + deflated(payload_bytes) + std::string(2, '\0');
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

#pragma once

/// \file
/// A user's flash description as the tests themselves write it: packing by the bit, the password by buffers, a CRC by
/// the bit, and zlib used directly, so that it can stand against the library's own code.

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "pgmdev/flash/fixture.h"
#include "pgmdev/flash/probe.h"

/// A manager whose members for the user's flash a test can reach.
class USER_FLASH_PROBE : public FLASH_PROBE {
public:
    using FLASH_PROBE::FLASH_PROBE;

    using PGMDEV_FLASH_MANAGER::assign_ini;
    using PGMDEV_FLASH_MANAGER::cmp_ini_password;
    using PGMDEV_FLASH_MANAGER::decode_ini;
    using PGMDEV_FLASH_MANAGER::encode_ini;
    using PGMDEV_FLASH_MANAGER::gen_ini_password;
    using PGMDEV_FLASH_MANAGER::get_string_from_ini;
    using PGMDEV_FLASH_MANAGER::parse_ext_flash_info;
    using PGMDEV_FLASH_MANAGER::print_ini_database;
    using PGMDEV_FLASH_MANAGER::prompt_flash_info;
};

namespace user_flash_reference {

inline const std::string KEY = "PGM_USER_SFL_FLASH_INFO";

inline unsigned crc16(const std::string& bytes) {
    unsigned crc = 0;
    for (const char c : bytes) {
        for (int bit = 7; bit >= 0; --bit) {
            const unsigned in = static_cast<unsigned>(c) >> bit & 1;
            const unsigned out = crc >> 15 & 1;
            crc = (crc << 1 & 0xFFFF) ^ (in != out ? 0x1021U : 0U);
        }
    }
    return crc;
}

inline char letter(unsigned byte) {
    return static_cast<char>(byte >= 65 && byte <= 90 ? byte : 65 + byte % 26);
}

/// The password of a text, signed by the version that the banner spells.
inline std::string password(const std::string& text, const std::string& banner) {
    const unsigned seal = crc16(banner);
    const char low = static_cast<char>(seal & 0xFF);
    const char high = static_cast<char>(seal >> 8);
    std::string letters;
    for (std::size_t lane = 0; lane < 8; ++lane) {
        std::string buffer((text.size() + 7) / 8, '\0');
        std::size_t next = 0;
        for (std::size_t j = 0; j < text.size(); ++j) {
            if (j % 8 == lane) {
                buffer[next++] = static_cast<char>(text[j] ^ (j % 2 == 0 ? low : high));
            }
        }
        const unsigned crc = crc16(buffer);
        letters += letter(crc & 0xFF);
        letters += letter(crc >> 8);
    }
    return letters;
}

inline const std::string SYMBOLS =
    "0123456789"
    "ABCDEFGHIJKLMNOPQRSTUVWXYZ"
    "abcdefghijklmnopqrstuvwxyz"
    "@-";

/// Bytes in 6-bit characters, by way of a list of bits.
inline std::string symbols_of(const std::string& bytes) {
    std::vector<int> bits;
    for (const char c : bytes) {
        for (int bit = 0; bit < 8; ++bit) {
            bits.push_back(static_cast<unsigned char>(c) >> bit & 1);
        }
    }
    while (bits.size() % 6 != 0) {
        bits.push_back(0);
    }
    std::string symbols;
    for (std::size_t i = 0; i < bits.size(); i += 6) {
        std::size_t value = 0;
        for (std::size_t bit = 0; bit < 6; ++bit) {
            value += static_cast<std::size_t>(bits[i + bit]) << bit;
        }
        symbols += SYMBOLS[value];
    }
    return symbols;
}

inline std::string encoded(const std::string& text) {
    return symbols_of(flash_reference::deflated(text));
}

/// A described flash: its values in order, all of them accepted and plausible.
inline std::vector<std::string> values() {
    return flash_reference::row_of(&flash_reference::COLUMN::value);
}

/// The same flash as a record.
inline PGMDEV_SFL_FLASH_INFO record() {
    PGMDEV_SFL_FLASH_INFO r;
    r.manufacturer_name = "ACME";
    r.device_name = "AC25X80";
    r.memory_id = 20;
    r.memory_id_index = 2;
    r.memory_type = 113;
    r.memory_type_index = 1;
    r.mfc_id = 32;
    r.orvane_id = 18;
    r.default_dev = true;
    r.ini = "NONE";
    r.die_count = 1;
    r.device_bit_size = 8388608;
    r.device_sector_byte = 65536;
    r.bulk_erase_time = 80;
    r.sec_erase_time = 3;
    r.program_utime = 5000;
    r.protection_mask = 28;
    r.protection_value = 28;
    r.protection_division = 7;
    r.bottom_value = 5;
    r.asc_voltage = "3.3V";
    return r;
}

/// The number of a member, counted from 0.
inline std::size_t place(std::string_view member) {
    std::size_t i = 0;
    while (PGMDEV_SFL_FLASH_MEMBERS.at(i).name != member) {
        ++i;
    }
    return i;
}

using CHANGES = std::vector<std::pair<std::string, std::string>>;

/// A body of the values above, with some of them changed.
inline std::string body(const CHANGES& changes = {}) {
    std::vector<std::string> all = values();
    for (const auto& [member, value] : changes) {
        all[place(member)] = value;
    }
    std::string text = "@";
    for (const std::string& value : all) {
        text += value + "@";
    }
    return text;
}

/// What the tests sign with.
inline const std::string BANNER = "Tessary Version: 7.1.0 SP2 Build 345";

inline std::string sealed(const std::string& body_text) {
    return body_text + "#" + password(body_text, BANNER) + ";";
}

}  // namespace user_flash_reference

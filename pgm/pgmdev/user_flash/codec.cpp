#include "user_flash/codec.h"

#include <array>
#include <limits>
#include <memory>
#include <vector>

#include "gen.h"
#include "pgmdev_types.h"
#include "report.h"
#include "ver.h"
#include "zlib_wrapper.h"

namespace {

constexpr const char* COMPRESSION_FAILURE = "Fail to generate INI because of compression failure\n";
constexpr const char* INVALID_DECODING = "Invalid INI decoding\n";
constexpr const char* DECOMPRESSION_FAILURE = "Fail to generate INI because of decompression failure\n";

constexpr int NO_MEMORY_FOR_ZLIB = -4;  ///< Z_MEM_ERROR

constexpr unsigned SYMBOL_BITS = 6;
constexpr unsigned BYTE_BITS = 8;
constexpr QWORD COMPRESSED_LIMIT = 2;     ///< compressed size, in sizes of the text
constexpr QWORD DECOMPRESSED_LIMIT = 20;  ///< size of the text, in packed sizes
constexpr QWORD DWORD_MAXIMUM = std::numeric_limits<DWORD>::max();

constexpr QWORD divide_up(QWORD number, QWORD by) {
    return (number + by - 1) / by;
}

constexpr BYTE NO_SYMBOL = 0xFF;

constexpr std::array<BYTE, 256> SYMBOL_VALUES = [] {
    std::array<BYTE, 256> values{};
    for (BYTE& value : values) {
        value = NO_SYMBOL;
    }
    for (std::size_t i = 0; i < USER_FLASH_SYMBOLS.size(); ++i) {
        values[static_cast<unsigned char>(USER_FLASH_SYMBOLS[i])] = static_cast<BYTE>(i);
    }
    return values;
}();

const BYTE* bytes_of(std::string_view text) {
    return reinterpret_cast<const BYTE*>(text.data());
}

/// CRC-16 with the polynomial 0x1021, most significant bit first, starting at 0 (XMODEM).
constexpr std::array<WORD, 256> CRC_TABLE = [] {
    std::array<WORD, 256> table{};
    for (unsigned byte = 0; byte < table.size(); ++byte) {
        unsigned crc = byte << 8;
        for (unsigned bit = 0; bit < BYTE_BITS; ++bit) {
            crc = crc << 1 ^ ((crc & 0x8000) != 0 ? 0x1021U : 0U);
        }
        table[byte] = static_cast<WORD>(crc);
    }
    return table;
}();

constexpr WORD crc_with(WORD crc, BYTE byte) {
    return static_cast<WORD>(crc << 8 ^ CRC_TABLE[(crc >> 8 ^ byte) & 0xFF]);
}

std::string version_banner() {
    const DWORD index_number = ver_get_current_version_index_number();
    const int service_pack = static_cast<int>(index_number & 0xFF);
    const int build = static_cast<int>(index_number >> 8 & 0xFFFF);
    std::string banner = "Tessary Version: " + ver_get_version() + " ";
    if (service_pack != 0) {
        banner += "SP" + gen_itoa(service_pack) + " ";
    }
    return banner + "Build " + gen_itoa(build);
}

constexpr char letter_of(BYTE byte) {
    return static_cast<char>(byte >= 'A' && byte <= 'Z' ? byte : 'A' + byte % 26);
}

}  // namespace

USER_FLASH_CODING encode_user_flash(std::string_view text) {
    const QWORD capacity = COMPRESSED_LIMIT * text.size();
    if (capacity > DWORD_MAXIMUM) {
        return {{}, COMPRESSION_FAILURE};
    }
    std::vector<BYTE> packed(capacity);
    auto packed_size = static_cast<DWORD>(capacity);
    const int result = zlib_compress(packed.data(), &packed_size, bytes_of(text), static_cast<DWORD>(text.size()));
    if (result != ZLIB_OK) {
        return {{}, COMPRESSION_FAILURE, result == NO_MEMORY_FOR_ZLIB};
    }
    const QWORD encoded_size = divide_up(QWORD{packed_size} * BYTE_BITS, SYMBOL_BITS);
    std::string encoded;
    encoded.reserve(encoded_size);
    unsigned waiting = 0;  // bits that have no character yet
    unsigned waiting_count = 0;
    for (DWORD i = 0; i < packed_size; ++i) {
        waiting |= unsigned{packed[i]} << waiting_count;
        waiting_count += BYTE_BITS;
        const bool last = i + 1 == packed_size;
        while (waiting_count >= SYMBOL_BITS || (last && waiting_count > 0)) {
            encoded += USER_FLASH_SYMBOLS[waiting & ((1U << SYMBOL_BITS) - 1)];
            waiting >>= SYMBOL_BITS;
            waiting_count -= waiting_count < SYMBOL_BITS ? waiting_count : SYMBOL_BITS;
        }
    }
    PGMDEV_REQUIRE(encoded.size() == encoded_size, "encoded_ini.size() == encoded_size", FLASH_MANAGER_FILE);
    return {encoded};
}

USER_FLASH_CODING decode_user_flash(std::string_view encoded) {
    const QWORD decoded_size = divide_up(QWORD{encoded.size()} * SYMBOL_BITS, BYTE_BITS);
    std::vector<BYTE> packed;
    packed.reserve(decoded_size);
    unsigned waiting = 0;  // bits that do not fill a byte yet
    unsigned waiting_count = 0;
    for (const char symbol : encoded) {
        const BYTE value = SYMBOL_VALUES[static_cast<unsigned char>(symbol)];
        if (value == NO_SYMBOL) {
            return {{}, INVALID_DECODING};
        }
        waiting |= unsigned{value} << waiting_count;
        waiting_count += SYMBOL_BITS;
        if (waiting_count >= BYTE_BITS) {
            packed.push_back(static_cast<BYTE>(waiting & 0xFF));
            waiting >>= BYTE_BITS;
            waiting_count -= BYTE_BITS;
        }
    }
    if (waiting_count > 0) {
        packed.push_back(static_cast<BYTE>(waiting));
    }
    PGMDEV_REQUIRE(packed.size() == decoded_size, "decoded_index == decoded_size", FLASH_MANAGER_FILE);

    const QWORD capacity = DECOMPRESSED_LIMIT * decoded_size;
    if (capacity > DWORD_MAXIMUM) {
        return {{}, DECOMPRESSION_FAILURE};
    }
    // Left uninitialised: only what zlib produces is read, and what it does not touch costs no memory.
    const auto text = std::make_unique_for_overwrite<BYTE[]>(capacity);
    auto text_size = static_cast<DWORD>(capacity);
    const int result = zlib_uncompress(text.get(), &text_size, packed.data(), static_cast<DWORD>(decoded_size));
    if (result != ZLIB_OK) {
        return {{}, DECOMPRESSION_FAILURE, result == NO_MEMORY_FOR_ZLIB};
    }
    const std::string_view produced(reinterpret_cast<const char*>(text.get()), text_size);
    return {std::string(produced.substr(0, produced.find('\0')))};
}

std::string user_flash_password(std::string_view text) {
    constexpr std::size_t LANES = USER_FLASH_PASSWORD_SIZE / 2;  // two letters each
    const QWORD total_size = text.size();
    PGMDEV_REQUIRE(total_size > 0, "total_size > 0", FLASH_MANAGER_FILE);
    const QWORD sector_size = divide_up(total_size, LANES);
    PGMDEV_REQUIRE(sector_size > 0, "sector_size > 0", FLASH_MANAGER_FILE);

    WORD seal = 0;
    for (const char c : version_banner()) {
        seal = crc_with(seal, static_cast<BYTE>(c));
    }
    std::string password;
    for (std::size_t lane = 0; lane < LANES; ++lane) {
        // Every eighth byte belongs to the lane, so that all its bytes stand at even places, or all at odd ones.
        const BYTE mask = lane % 2 == 0 ? static_cast<BYTE>(seal & 0xFF) : static_cast<BYTE>(seal >> 8);
        WORD crc = 0;
        for (QWORD i = 0; i < sector_size; ++i) {
            const QWORD place = i * LANES + lane;
            const bool inside = place < total_size;  // behind the text, a lane is filled up with zeros
            crc = crc_with(crc, inside ? static_cast<BYTE>(static_cast<BYTE>(text[place]) ^ mask) : BYTE{0});
        }
        password += letter_of(static_cast<BYTE>(crc & 0xFF));
        password += letter_of(static_cast<BYTE>(crc >> 8));
    }
    return password;
}

bool is_user_flash_password(std::string_view text, std::string_view password) {
    return password.size() == USER_FLASH_PASSWORD_SIZE && password == user_flash_password(text);
}

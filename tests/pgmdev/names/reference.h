#pragma once

/// \file
/// The compiled-in data sets as the tests themselves write and read them: plainly from the description of the format,
/// with zlib used directly and the CRC bit by bit, so that they can stand against the library's own code.

#include <zlib.h>

#include <algorithm>
#include <cstdint>
#include <map>
#include <numeric>
#include <stdexcept>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

namespace ddb_reference {

constexpr const char* MAGIC = "PGMDEV_DDB";

/// A table as it is written: records in file order, which may break every rule.
using TABLE = std::vector<std::pair<std::string, std::vector<std::string>>>;
/// A table as it is read.
using MAP = std::map<std::string, std::vector<std::string>>;

inline std::uint32_t crc32_bzip2(const std::string& bytes) {
    std::uint32_t crc = 0xFFFFFFFF;
    for (const char byte : bytes) {
        crc ^= static_cast<std::uint32_t>(static_cast<unsigned char>(byte)) << 24;
        for (int bit = 0; bit < 8; ++bit) {
            crc = (crc & 0x80000000) != 0 ? crc << 1 ^ 0x04C11DB7 : crc << 1;
        }
    }
    return ~crc;
}

inline std::string le32(std::uint32_t value) {
    std::string bytes;
    for (int i = 0; i < 4; ++i) {
        bytes += static_cast<char>(value >> (8 * i) & 0xFF);
    }
    return bytes;
}

inline std::string grammar_body(const std::vector<TABLE>& tables) {
    std::string body;
    for (const TABLE& table : tables) {
        for (const auto& [key, entries] : table) {
            body += key + '\0';
            for (const std::string& entry : entries) {
                body += entry + '\0';
            }
            body += '\0';
        }
        body += '\0';
    }
    return body;
}

inline std::string variable_length(std::uint64_t value) {
    std::string bytes;
    for (; value >= 0x80; value >>= 7) {
        bytes += static_cast<char>((value & 0x7F) | 0x80);
    }
    return bytes + static_cast<char>(value);
}

inline std::string opn_body(const std::vector<std::uint32_t>& parts) {
    std::string body = le32(static_cast<std::uint32_t>(parts.size()));
    for (const std::uint32_t part : parts) {
        body += variable_length(part);
    }
    return body;
}

inline std::string container(const std::string& body) {
    return MAGIC + body + le32(crc32_bzip2(MAGIC + body));
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

inline std::string inflated(const unsigned char* stream, std::size_t stream_length, std::size_t length) {
    std::string bytes(length, '\0');
    auto produced = static_cast<uLongf>(length);
    if (uncompress(reinterpret_cast<Bytef*>(bytes.data()), &produced, stream, static_cast<uLong>(stream_length)) !=
            Z_OK ||
        produced != length) {
        throw std::runtime_error("uncompress");
    }
    return bytes;
}

/// The value that is reported when a body breaks a rule.
struct REFUSED : std::runtime_error {
    using std::runtime_error::runtime_error;
};

inline void require(bool holds, const char* text) {
    if (!holds) {
        throw REFUSED(text);
    }
}

/// Reads the grammar of a container: step by step, with every check in its place.
inline std::vector<MAP> read_grammar(const std::string& data) {
    std::vector<MAP> maps(8);
    std::size_t index = 10;
    std::size_t pointer_index = 0;
    const std::size_t end = data.size() - 4;
    const auto read_string = [&] {
        require(index < end, "index < data_size");
        require(data[index] != 0, "data[index] != 0");
        std::string text;
        while (index < end && data[index] != 0) {
            text += data[index++];
        }
        require(index < end && data[index] == 0, "index < data_size && data[index] == 0");
        ++index;
        require(index < end, "index < data_size");
        return text;
    };
    while (index < end) {
        require(pointer_index < 8, "pointer_index < DWORD(PGMDEV_DDB_GRAMMAR_ENUM::MAX)");
        const std::string key = read_string();
        std::vector<std::string> contents;
        while (index < end && data[index] != 0) {
            const std::string content = read_string();
            require(!content.empty(), "content.size()");
            require(std::find(contents.begin(), contents.end(), content) == contents.end(),
                    "std::find(contents.begin(), contents.end(), content) == contents.end()");
            contents.push_back(content);
        }
        require(!contents.empty(), "contents.size()");
        require(index < end && data[index] == 0, "index < data_size && data[index] == 0");
        require(maps[pointer_index].find(key) == maps[pointer_index].end(), "map->find(key) == map->end()");
        maps[pointer_index][key] = contents;
        ++index;
        require(index < end, "index < data_size");
        if (data[index] == 0) {
            ++index;
            ++pointer_index;
        }
    }
    require(pointer_index == 8, "pointer_index == DWORD(PGMDEV_DDB_GRAMMAR_ENUM::MAX)");
    return maps;
}

/// Reads the ordering-code list of a container.
inline std::vector<std::uint32_t> read_opn(const std::string& data) {
    const auto byte_at = [&](std::size_t i) { return std::uint32_t{static_cast<unsigned char>(data[i])}; };
    const std::uint32_t count = byte_at(10) | byte_at(11) << 8 | byte_at(12) << 16 | byte_at(13) << 24;
    require(count > 0, "enum_count > 0");
    std::vector<std::uint32_t> parts;
    std::size_t index = 14;
    for (std::uint32_t i = 0; i < count; ++i) {
        std::string groups;
        do {
            require(index < data.size() - 4, "index < (data_size - 4)");
            groups += data[index++];
        } while ((groups.back() & 0x80) != 0);
        require(groups.size() <= 5, "shift <= 35");
        const std::uint64_t value = std::accumulate(
            groups.rbegin(), groups.rend(), std::uint64_t{0},
            [](std::uint64_t higher, char group) { return higher * 128 + (static_cast<unsigned char>(group) & 0x7F); });
        require(value <= 0xFFFFFFFF, "dev_enum <= QWORD(0xFFFFFFFF)");
        parts.push_back(static_cast<std::uint32_t>(value));
    }
    require(index == data.size() - 4, "index == (data_size - 4)");
    return parts;
}

/// The first key, in ascending order, whose list holds `entry`; "" when none does.
inline std::string walk(const MAP& map, const std::string& entry) {
    for (const auto& [key, entries] : map) {
        if (std::find(entries.begin(), entries.end(), entry) != entries.end()) {
            return key;
        }
    }
    return {};
}

/// What a walk finds for each entry.
inline std::unordered_map<std::string, std::string> keys_by_walk(const MAP& map) {
    std::unordered_map<std::string, std::string> keys;
    for (const auto& [key, entries] : map) {
        for (const std::string& each : entries) {
            keys.try_emplace(each, key);
        }
    }
    return keys;
}

/// A small grammar: a device with packages, one whose full name is all its names, one without packages.
inline std::vector<TABLE> example_grammar() {
    return {
        {{"DEVICE_A1F100", {"DEVICE_A1F100C6", "DEVICE_A1F100I7"}}, {"SOLO_1", {"SOLO_1"}}},
        {{"DEVICE_A1", {"DEVICE_A1F100"}}, {"SOLO_1", {"SOLO_1"}}, {"PLAIN_9", {"PLAIN_9"}}},
        {{"PCF_A1", {"DEVICE_A1"}}, {"PCF_S", {"SOLO_1", "PLAIN_9"}}},
        {{"NONE", {"SOLO_1", "PLAIN_9"}}, {"FAMILY_A_PCF", {"DEVICE_A1"}}},
        {{"PCF_A1", {"LIB_A1", "LIB_A1_ES"}}, {"PCF_L", {"LIB_ONLY"}}},
        {{"FAMILY_A_PCF", {"LIB_A1", "LIB_A1_ES"}}},
        {{"FAMILY_A_PCF", {"FAMILY_A_BASE"}}},
        {{"FAMILY_A", {"PCF_A1"}}, {"FAMILY_L", {"PCF_L"}}},
    };
}

}  // namespace ddb_reference

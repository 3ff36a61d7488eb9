#include "data_set.h"

#include <zlib.h>

#include <algorithm>
#include <stdexcept>

namespace {

constexpr std::size_t CRC_SIZE = 4;

void require(bool condition, const char* text) {
    if (!condition) {
        throw std::runtime_error(std::string("the output does not read back: ") + text);
    }
}

void append_dword(BYTES& bytes, std::uint32_t value) {
    for (int shift = 0; shift < 32; shift += 8) {
        bytes.push_back(static_cast<std::uint8_t>(value >> shift));
    }
}

std::uint32_t dword_at(const BYTES& bytes, std::size_t position) {
    require(bytes.size() >= 4 && position <= bytes.size() - 4, "a 32-bit number is cut off");
    std::uint32_t value = 0;
    for (std::size_t i = 0; i < 4; ++i) {
        value |= static_cast<std::uint32_t>(bytes[position + i]) << (8 * i);
    }
    return value;
}

void append_text(BYTES& bytes, const std::string& text) {
    bytes.insert(bytes.end(), text.begin(), text.end());
    bytes.push_back(0);
}

/// Takes texts and marks from a grammar body.
class TEXT_READER {
public:
    explicit TEXT_READER(const BYTES& bytes) : m_bytes(bytes) {}

    bool at_end() const { return m_position == m_bytes.size(); }

    /// Steps over a 0 if one is next.
    bool skip_mark() {
        require(!at_end(), "a mark is missing");
        const bool found = m_bytes[m_position] == 0;
        m_position += found ? 1 : 0;
        return found;
    }

    std::string text() {
        const auto begin = m_bytes.begin() + static_cast<std::ptrdiff_t>(m_position);
        const auto end = std::find(begin, m_bytes.end(), 0);
        require(end != begin && end != m_bytes.end(), "a text is empty or cut off");
        m_position += static_cast<std::size_t>(end - begin) + 1;
        return {begin, end};
    }

private:
    const BYTES& m_bytes;
    std::size_t m_position = 0;
};

}  // namespace

std::uint32_t crc32_msb_first(const std::uint8_t* data, std::size_t size) {
    constexpr std::uint32_t POLYNOMIAL = 0x04C11DB7;
    constexpr std::uint32_t TOP_BIT = 0x80000000;
    std::uint32_t crc = 0xFFFFFFFF;
    for (std::size_t i = 0; i < size; ++i) {
        crc ^= static_cast<std::uint32_t>(data[i]) << 24;
        for (int bit = 0; bit < 8; ++bit) {
            crc = (crc & TOP_BIT) != 0 ? (crc << 1) ^ POLYNOMIAL : crc << 1;
        }
    }
    return ~crc;
}

BYTES encode_grammar(const GRAMMAR& grammar) {
    BYTES body;
    for (const auto& table : grammar) {
        for (const auto& [key, entries] : table) {
            append_text(body, key);
            for (const std::string& entry : entries) {
                append_text(body, entry);
            }
            body.push_back(0);
        }
        body.push_back(0);
    }
    return body;
}

BYTES encode_ordering_codes(const std::vector<std::uint32_t>& parts) {
    BYTES body;
    append_dword(body, static_cast<std::uint32_t>(parts.size()));
    for (std::uint32_t part : parts) {
        for (; part >= 0x80; part >>= 7) {
            body.push_back(static_cast<std::uint8_t>(part | 0x80));
        }
        body.push_back(static_cast<std::uint8_t>(part));
    }
    return body;
}

DATA_SET seal(const BYTES& body) {
    BYTES container(DATA_SET_MAGIC.begin(), DATA_SET_MAGIC.end());
    container.insert(container.end(), body.begin(), body.end());
    append_dword(container, crc32_msb_first(container.data(), container.size()));

    uLongf length = compressBound(static_cast<uLong>(container.size()));
    DATA_SET sealed{BYTES(length), container.size()};
    if (compress2(sealed.packed.data(), &length, container.data(), static_cast<uLong>(container.size()),
                  Z_BEST_COMPRESSION) != Z_OK) {
        throw std::runtime_error("zlib cannot pack a data set");
    }
    sealed.packed.resize(length);
    return sealed;
}

BYTES unseal(const DATA_SET& data_set) {
    BYTES container(data_set.unpacked_length);
    uLongf length = static_cast<uLongf>(container.size());
    require(uncompress(container.data(), &length, data_set.packed.data(), static_cast<uLong>(data_set.packed.size())) ==
                Z_OK,
            "zlib cannot unpack it");
    require(length == container.size() && length >= DATA_SET_MAGIC.size() + CRC_SIZE, "its length is wrong");
    require(std::equal(DATA_SET_MAGIC.begin(), DATA_SET_MAGIC.end(), container.begin()), "its magic is wrong");
    const std::size_t end = container.size() - CRC_SIZE;
    require(dword_at(container, end) == crc32_msb_first(container.data(), end), "its CRC is wrong");
    return {container.begin() + DATA_SET_MAGIC.size(), container.end() - CRC_SIZE};
}

GRAMMAR decode_grammar(const BYTES& body) {
    GRAMMAR grammar;
    TEXT_READER reader(body);
    for (auto& table : grammar) {
        do {
            std::vector<std::string> entries;
            const std::string key = reader.text();
            do {
                entries.push_back(reader.text());
            } while (!reader.skip_mark());
            require(table.emplace(key, std::move(entries)).second, "a key occurs twice");
        } while (!reader.skip_mark());
    }
    require(reader.at_end(), "something follows the last table");
    return grammar;
}

std::vector<std::uint32_t> decode_ordering_codes(const BYTES& body) {
    constexpr int MAX_SHIFT = 28;
    std::vector<std::uint32_t> parts;
    for (std::size_t position = 4; position < body.size();) {
        std::uint32_t part = 0;
        for (int shift = 0;; shift += 7) {
            require(position < body.size() && shift <= MAX_SHIFT, "a part number is cut off or too long");
            const std::uint8_t group = body[position++];
            part |= static_cast<std::uint32_t>(group & 0x7F) << shift;
            if (group < 0x80) {
                break;
            }
        }
        parts.push_back(part);
    }
    require(dword_at(body, 0) == parts.size(), "the number of ordering codes is wrong");
    return parts;
}

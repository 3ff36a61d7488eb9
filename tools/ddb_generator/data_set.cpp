#include "data_set.h"

#include <zlib.h>

#include <algorithm>
#include <array>
#include <stdexcept>

namespace {

constexpr std::size_t CRC_SIZE = 4;

/// The register after each byte, from a register of 0.
constexpr std::array<std::uint32_t, 256> CRC_OF_BYTE = [] {
    constexpr std::uint32_t POLYNOMIAL = 0x04C11DB7;
    constexpr std::uint32_t TOP_BIT = 0x80000000;
    std::array<std::uint32_t, 256> registers{};
    for (std::uint32_t byte = 0; byte < registers.size(); ++byte) {
        std::uint32_t crc = byte << 24;
        for (int bit = 0; bit < 8; ++bit) {
            crc = (crc & TOP_BIT) != 0 ? (crc << 1) ^ POLYNOMIAL : crc << 1;
        }
        registers[byte] = crc;
    }
    return registers;
}();

/// What is larger is packed at a lower level. Among a million names that begin alike the best one takes twelve times as
/// long, to pack worse.
constexpr std::size_t LARGEST_FOR_BEST_LEVEL = std::size_t{1} << 20;
constexpr int LEVEL_BEYOND = 5;

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
    bytes.insert(bytes.end(), text.c_str(), text.c_str() + text.size() + 1);
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

    std::string_view text() {
        const std::string_view rest(reinterpret_cast<const char*>(m_bytes.data()) + m_position,
                                    m_bytes.size() - m_position);
        const std::size_t length = rest.find('\0');
        require(length != 0 && length != std::string_view::npos, "a text is empty or cut off");
        m_position += length + 1;
        return rest.substr(0, length);
    }

private:
    const BYTES& m_bytes;
    std::size_t m_position = 0;
};

}  // namespace

std::uint32_t crc32_msb_first(const std::uint8_t* data, std::size_t size) {
    std::uint32_t crc = 0xFFFFFFFF;
    for (std::size_t i = 0; i < size; ++i) {
        crc = (crc << 8) ^ CRC_OF_BYTE[crc >> 24 ^ data[i]];
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
    const std::uint32_t crc = crc32_msb_first(container.data(), container.size());
    append_dword(container, crc);

    uLongf length = compressBound(static_cast<uLong>(container.size()));
    DATA_SET sealed{BYTES(length), container.size(), crc};
    const int level = container.size() <= LARGEST_FOR_BEST_LEVEL ? Z_BEST_COMPRESSION : LEVEL_BEYOND;
    if (compress2(sealed.packed.data(), &length, container.data(), static_cast<uLong>(container.size()), level) !=
        Z_OK) {
        throw std::runtime_error("zlib cannot pack a data set");
    }
    sealed.packed.resize(length);
    return sealed;
}

BYTES unseal(const DATA_SET& data_set) {
    BYTES container(data_set.unpacked_length);
    auto length = static_cast<uLongf>(container.size());
    require(uncompress(container.data(), &length, data_set.packed.data(), static_cast<uLong>(data_set.packed.size())) ==
                Z_OK,
            "zlib cannot unpack it");
    require(length == container.size() && length >= DATA_SET_MAGIC.size() + CRC_SIZE, "its length is wrong");
    require(std::equal(DATA_SET_MAGIC.begin(), DATA_SET_MAGIC.end(), container.begin()), "its magic is wrong");
    const std::size_t end = container.size() - CRC_SIZE;
    require(dword_at(container, end) == crc32_msb_first(container.data(), end), "its CRC is wrong");
    require(dword_at(container, end) == data_set.crc, "its CRC is another one");
    return {container.begin() + DATA_SET_MAGIC.size(), container.end() - CRC_SIZE};
}

void prove_grammar(const BYTES& body, const GRAMMAR& grammar) {
    constexpr const char* OTHER = "the grammar differs";
    TEXT_READER reader(body);
    for (const auto& table : grammar) {
        std::size_t records = table.size();
        for (const auto& [key, entries] : table) {
            require(reader.text() == key, OTHER);
            std::size_t count = entries.size();
            for (const std::string& entry : entries) {
                require(reader.text() == entry, OTHER);
                require(reader.skip_mark() == (--count == 0), OTHER);
            }
            require(reader.skip_mark() == (--records == 0), OTHER);
        }
    }
    require(reader.at_end(), "something follows the last table");
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

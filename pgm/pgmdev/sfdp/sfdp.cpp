#include <algorithm>
#include <array>
#include <string_view>
#include <tuple>

#include "sfdp/tables.h"

// A dump as a whole: the SFDP header, the parameter headers, and which tables are used.

namespace {

using SFDP = PGMDEV_FLASH_SFDP;
using BYTES = std::span<const BYTE>;

constexpr std::string_view SIGNATURE = "SFDP";
constexpr std::size_t HEADER_BYTES = 8;  ///< of the SFDP header, and of each parameter header
constexpr BYTE KNOWN_MAJOR = 1;          ///< another one would be another format

struct TABLE_NAME {
    WORD id;
    std::string_view name;
};

constexpr std::array TABLE_NAMES{
    TABLE_NAME{SFDP::BASIC_ID, "basic"},
    TABLE_NAME{0xFF03, "replay-protected counters"},
    TABLE_NAME{0xFF05, "xSPI profile 1"},
    TABLE_NAME{0xFF06, "xSPI profile 2"},
    TABLE_NAME{0xFF09, "register map, xSPI profile 2"},
    TABLE_NAME{0xFF0A, "octal DDR sequences"},
    TABLE_NAME{0xFF0C, "quad with data strobe"},
    TABLE_NAME{SFDP::SECTOR_MAP_ID, "sector map"},
    TABLE_NAME{SFDP::FOUR_BYTE_ID, "4-byte instructions"},
    TABLE_NAME{0xFF87, "register map"},
    TABLE_NAME{0xFF88, "register map, several dies"},
    TABLE_NAME{0xFF8B, "long latency"},
    TABLE_NAME{0xFF8D, "quad DDR sequences"},
    TABLE_NAME{0xFF8E, "secure packets"},
};

/// From which minor revision of the SFDP header on the editions of the standard differ.
struct EDITION {
    BYTE minor;
    std::string_view name;
};
constexpr std::array EDITIONS{EDITION{0, "JESD216"},  EDITION{5, "JESD216A"}, EDITION{6, "JESD216B"},
                              EDITION{7, "JESD216C"}, EDITION{8, "JESD216D"}, EDITION{9, "JESD216E"},
                              EDITION{10, "JESD216F"}};

std::string in_bytes(std::size_t count) {
    return std::to_string(count) + (count == 1 ? " byte" : " bytes");
}

std::string spelled(BYTES bytes) {
    std::string text;
    for (const BYTE byte : bytes) {
        text += (text.empty() ? "" : " ") + sfdp_hex(byte);
    }
    return text;
}

/// What probably happened that the signature is not where it should be; "": nobody knows.
std::string signature_hint(BYTES bytes) {
    constexpr std::size_t MOST_BEFORE = 8;  // the command, its address, and what is clocked in vain
    const auto same = [](BYTE byte, char c) { return byte == static_cast<BYTE>(c); };
    for (std::size_t before = 1; before <= MOST_BEFORE && before + SIGNATURE.size() <= bytes.size(); ++before) {
        const BYTES rest = bytes.subspan(before, SIGNATURE.size());
        if (std::equal(rest.begin(), rest.end(), SIGNATURE.begin(), same)) {
            return "; it stands " + in_bytes(before) + " later: take those before it away";
        }
    }
    for (const BYTE idle : {BYTE{0x00}, BYTE{0xFF}}) {
        if (std::all_of(bytes.begin(), bytes.end(), [idle](BYTE byte) { return byte == idle; })) {
            return ", and nothing else: the flash has no SFDP, or nobody drives the data line";
        }
    }
    return "";
}

/// Why there is no area at the beginning of the bytes.
std::optional<SFDP::REFUSAL> header_refusal(BYTES bytes) {
    for (std::size_t i = 0; i < SIGNATURE.size(); ++i) {
        if (i == bytes.size()) {
            return SFDP::REFUSAL{static_cast<DWORD>(i), "signature", "the end of the dump", "53 46 44 50 (\"SFDP\")"};
        }
        if (bytes[i] != static_cast<BYTE>(SIGNATURE[i])) {
            return SFDP::REFUSAL{static_cast<DWORD>(i), "signature",
                                 spelled(bytes.first(std::min(bytes.size(), SIGNATURE.size()))) + signature_hint(bytes),
                                 "53 46 44 50 (\"SFDP\")"};
        }
    }
    if (bytes.size() < 2 * HEADER_BYTES) {
        return SFDP::REFUSAL{static_cast<DWORD>(bytes.size()),
                             bytes.size() < HEADER_BYTES ? "SFDP header" : "first parameter header",
                             "the end of the dump", "16 bytes for both headers"};
    }
    if (bytes[5] != KNOWN_MAJOR) {
        return SFDP::REFUSAL{5, "major revision of the SFDP header", std::to_string(bytes[5]), "1"};
    }
    return std::nullopt;
}

SFDP::HEADER header_from(DWORD word1, DWORD word2) {
    SFDP::HEADER header;
    header.id = static_cast<WORD>(sfdp_bits(word2, 31, 24) << 8 | sfdp_bits(word1, 7, 0));
    header.minor = static_cast<BYTE>(sfdp_bits(word1, 15, 8));
    header.major = static_cast<BYTE>(sfdp_bits(word1, 23, 16));
    header.words = static_cast<BYTE>(sfdp_bits(word1, 31, 24));
    header.offset = sfdp_bits(word2, 23, 0);
    return header;
}

/// As many headers as the SFDP header counts, and not one more: behind them other bytes may stand.
std::vector<SFDP::HEADER> headers_of(BYTES bytes, SFDP_WARNINGS& warnings) {
    const std::size_t count = std::size_t{bytes[6]} + 1;
    std::vector<SFDP::HEADER> headers;
    for (std::size_t i = 0; i < count; ++i) {
        const std::size_t offset = HEADER_BYTES * (1 + i);
        if (bytes.size() < offset + HEADER_BYTES) {
            warnings.push_back("header " + std::to_string(i + 1) + " of " + std::to_string(count) + " at " +
                               sfdp_hex(offset) + "h: the dump ends after " + in_bytes(bytes.size()) +
                               "; no further header is read");
            break;
        }
        headers.push_back(header_from(sfdp_word(bytes, offset), sfdp_word(bytes, offset + 4)));
    }
    return headers;
}

/// Why the table behind a header cannot be read.
std::optional<SFDP::REFUSAL> table_refusal(BYTES bytes, const SFDP::HEADER& header, std::size_t least_words) {
    const std::string name = SFDP::table_name(header.id) + " table";
    const std::size_t end = header.offset + std::size_t{header.words} * 4;
    if (header.major != KNOWN_MAJOR) {
        return SFDP::REFUSAL{header.offset, "major revision of the " + name, std::to_string(header.major), "1"};
    }
    if (header.words < least_words) {
        return SFDP::REFUSAL{header.offset, "length of the " + name, std::to_string(header.words) + " words",
                             std::to_string(least_words) + " words at least"};
    }
    if (header.offset < 2 * HEADER_BYTES) {
        return SFDP::REFUSAL{header.offset, "offset of the " + name, sfdp_hex(header.offset) + "h",
                             "10h at least, behind the headers"};
    }
    if (end > bytes.size()) {
        return SFDP::REFUSAL{static_cast<DWORD>(std::max<std::size_t>(bytes.size(), header.offset)), name,
                             "a dump of " + in_bytes(bytes.size()),
                             std::to_string(header.words) + " words, up to " + sfdp_hex(end) + "h"};
    }
    return std::nullopt;
}

/// The newest table of a kind that can be read. `refusal` is why there is none: of the newest one.
std::optional<SFDP_TABLE> newest_table(BYTES bytes, const std::vector<SFDP::HEADER>& headers, WORD id,
                                       std::size_t least_words, SFDP_WARNINGS& warnings,
                                       std::optional<SFDP::REFUSAL>& refusal) {
    std::vector<SFDP::HEADER> wanted;
    std::copy_if(headers.begin(), headers.end(), std::back_inserter(wanted),
                 [id](const SFDP::HEADER& header) { return header.id == id; });
    const auto revision = [](const SFDP::HEADER& header) { return header.major << 8 | header.minor; };
    std::stable_sort(wanted.begin(), wanted.end(), [&revision](const SFDP::HEADER& left, const SFDP::HEADER& right) {
        return revision(left) > revision(right);
    });
    for (const SFDP::HEADER& header : wanted) {
        const std::optional<SFDP::REFUSAL> damage = table_refusal(bytes, header, least_words);
        if (damage) {
            refusal = refusal ? refusal : damage;
            warnings.push_back(SFDP_TABLE{header, {}}.name() + ": " + SFDP::describe(*damage) + "; it is not used");
            continue;
        }
        SFDP_TABLE table{header, {}};
        for (std::size_t i = 0; i < header.words; ++i) {
            table.words.push_back(sfdp_word(bytes, header.offset + 4 * i));
        }
        return table;
    }
    return std::nullopt;
}

void take_erase_opcodes(const SFDP::FOUR_BYTE_TABLE& table, std::vector<SFDP::ERASE_TYPE>& erase_types) {
    for (SFDP::ERASE_TYPE& type : erase_types) {
        for (const auto& [number, opcode] : table.erase_opcodes) {
            if (number == type.number) {
                type.opcode_4byte = opcode;
            }
        }
    }
}

}  // namespace

SFDP SFDP::from_bytes(BYTES bytes) {
    SFDP sfdp;
    sfdp.m_refusal = header_refusal(bytes);
    if (sfdp.m_refusal) {
        return sfdp;
    }
    sfdp.m_minor = bytes[4];
    sfdp.m_major = bytes[5];
    sfdp.m_access_protocol = bytes[7];
    sfdp.m_headers = headers_of(bytes, sfdp.m_warnings);

    std::optional<REFUSAL> refusal;
    const auto basic = newest_table(bytes, sfdp.m_headers, BASIC_ID, SFDP_BASIC_WORDS, sfdp.m_warnings, refusal);
    if (!basic) {
        sfdp.m_refusal = refusal.value_or(
            REFUSAL{HEADER_BYTES, "parameter headers", "no basic table", "a header with the number FF00"});
        return sfdp;
    }
    sfdp.m_basic = read_basic_table(*basic, sfdp.m_warnings);
    if (const auto four = newest_table(bytes, sfdp.m_headers, FOUR_BYTE_ID, 1, sfdp.m_warnings, refusal)) {
        sfdp.m_four_byte = read_four_byte_table(*four, sfdp.m_warnings);
    }
    if (sfdp.m_four_byte) {
        take_erase_opcodes(*sfdp.m_four_byte, sfdp.m_basic.erase_types);
    }
    if (const auto maps = newest_table(bytes, sfdp.m_headers, SECTOR_MAP_ID, 1, sfdp.m_warnings, refusal)) {
        SFDP_SECTOR_MAPS read = read_sector_maps(*maps, sfdp.m_basic, sfdp.m_warnings);
        sfdp.m_map_commands = std::move(read.commands);
        sfdp.m_sector_maps = std::move(read.maps);
    }
    return sfdp;
}

std::string SFDP::describe(const REFUSAL& refusal) {
    return "byte " + sfdp_hex(refusal.offset) + "h, " + refusal.field + ": found " + refusal.found + ", expected " +
           refusal.expected;
}

std::string SFDP::table_name(WORD id) {
    const auto* const found =
        std::find_if(TABLE_NAMES.begin(), TABLE_NAMES.end(), [id](const TABLE_NAME& each) { return each.id == id; });
    return std::string(found != TABLE_NAMES.end() ? found->name : "vendor");
}

std::string SFDP::address_text(BYTE address_code) {
    constexpr std::array<std::string_view, 4> TEXTS{"3", "3 or 4", "4", "reserved"};
    return std::string(TEXTS[address_code & 3]);
}

std::string SFDP::standard() const {
    const auto newer =
        std::find_if(EDITIONS.begin(), EDITIONS.end(), [this](const EDITION& each) { return each.minor > m_minor; });
    return std::string(std::prev(newer)->name) + (m_minor > EDITIONS.back().minor ? " or later" : "");
}

bool SFDP::hybrid() const noexcept {
    return std::any_of(m_sector_maps.begin(), m_sector_maps.end(),
                       [](const SECTOR_MAP& map) { return map.regions.size() > 1; });
}

const SFDP::ERASE_TYPE* SFDP::sector_erase() const noexcept {
    const auto erases_everything = [this](const ERASE_TYPE& type) {
        return std::all_of(m_sector_maps.begin(), m_sector_maps.end(), [&type](const SECTOR_MAP& map) {
            return std::all_of(map.regions.begin(), map.regions.end(), [&type](const REGION& region) {
                return std::find(region.erase_types.begin(), region.erase_types.end(), type.number) !=
                       region.erase_types.end();
            });
        });
    };
    constexpr BYTE USUAL_OPCODE = 0xD8;
    const auto rank = [&erases_everything](const ERASE_TYPE& type) {
        return std::tuple(erases_everything(type), type.opcode == USUAL_OPCODE, type.bytes);
    };
    const auto& types = m_basic.erase_types;
    const auto best =
        std::max_element(types.begin(), types.end(),
                         [&rank](const ERASE_TYPE& left, const ERASE_TYPE& right) { return rank(left) < rank(right); });
    return best != types.end() ? &*best : nullptr;
}

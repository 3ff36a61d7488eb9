#include <algorithm>
#include <array>

#include "sfdp/tables.h"

// The Sector Map Parameter Table: descriptors of commands, two words each, and behind them descriptors of maps, one word
// and one for each region.

namespace {

using SFDP = PGMDEV_FLASH_SFDP;

bool is_map(DWORD word) {
    return sfdp_bits(word, 1, 1) != 0;
}

bool ends_sequence(DWORD word) {
    return sfdp_bits(word, 0, 0) != 0;
}

SFDP::MAP_COMMAND command_from(DWORD word, DWORD address) {
    constexpr std::array<BYTE, 3> ADDRESS_BYTES{0, 3, 4};
    constexpr DWORD AS_SET = 15;
    SFDP::MAP_COMMAND command;
    command.opcode = static_cast<BYTE>(sfdp_bits(word, 15, 8));
    command.mask = static_cast<BYTE>(sfdp_bits(word, 31, 24));
    command.address = address;
    const DWORD address_code = sfdp_bits(word, 23, 22);
    if (address_code < ADDRESS_BYTES.size()) {
        command.address_bytes = ADDRESS_BYTES[address_code];
    }
    const DWORD clocks = sfdp_bits(word, 19, 16);
    if (clocks != AS_SET) {
        command.wait_clocks = static_cast<BYTE>(clocks);
    }
    return command;
}

SFDP::REGION region_from(DWORD word, QWORD offset) {
    constexpr QWORD UNIT = 256;
    SFDP::REGION region{offset, (QWORD{sfdp_bits(word, 31, 8)} + 1) * UNIT, {}};
    for (BYTE type = 1; type <= 4; ++type) {
        if ((word >> (type - 1) & 1) != 0) {
            region.erase_types.push_back(type);
        }
    }
    return region;
}

/// The erase types of a region that the basic table does not have.
bool has_unknown_types(const SFDP::REGION& region, const SFDP::BASIC_TABLE& basic) {
    return !std::all_of(region.erase_types.begin(), region.erase_types.end(), [&basic](BYTE type) {
        return std::any_of(basic.erase_types.begin(), basic.erase_types.end(),
                           [type](const SFDP::ERASE_TYPE& known) { return known.number == type; });
    });
}

/// Whether the map is one of the flash.
bool fits(const SFDP::SECTOR_MAP& map, const std::string& place, const SFDP::BASIC_TABLE& basic,
          SFDP_WARNINGS& warnings) {
    for (const SFDP::REGION& region : map.regions) {
        if (region.erase_types.empty()) {
            warnings.push_back(place + ": nothing erases the region at " + sfdp_hex(region.offset) + "h");
        } else if (has_unknown_types(region, basic)) {
            warnings.push_back(place + ": the region at " + sfdp_hex(region.offset) +
                               "h names an erase type that the basic table does not have");
        }
    }
    const QWORD end = map.regions.back().offset + map.regions.back().bytes;
    if (basic.bytes() != 0 && end != basic.bytes()) {
        warnings.push_back(place + ": its regions end at " + std::to_string(end) + " bytes, the chip has " +
                           std::to_string(basic.bytes()) + "; it is not used");
        return false;
    }
    return true;
}

/// The words from `next` on are maps. False: they are not, and `warnings` says why.
bool read_maps(const SFDP_TABLE& table, std::size_t next, const SFDP::BASIC_TABLE& basic, SFDP_SECTOR_MAPS& result,
               SFDP_WARNINGS& warnings) {
    bool ended = false;
    while (next < table.words.size() && !ended) {
        const DWORD word = table.words[next];
        const std::string place = table.name() + " word " + std::to_string(next + 1);
        const std::size_t count = sfdp_bits(word, 23, 16) + 1;
        if (!is_map(word)) {
            warnings.push_back(place + ": a command behind a map, expected a map; the table is not used");
            return false;
        }
        if (count > table.words.size() - next - 1) {
            warnings.push_back(place + ": a map of " + std::to_string(count) + " regions, the table has " +
                               std::to_string(table.words.size() - next - 1) + " more words; it is not used");
            return false;
        }
        SFDP::SECTOR_MAP map{static_cast<BYTE>(sfdp_bits(word, 15, 8)), {}};
        QWORD offset = 0;
        for (std::size_t i = 0; i < count; ++i) {
            map.regions.push_back(region_from(table.words[next + 1 + i], offset));
            offset += map.regions.back().bytes;
        }
        if (fits(map, place + " (map " + std::to_string(map.id) + ")", basic, warnings)) {
            result.maps.push_back(std::move(map));
        }
        ended = ends_sequence(word);
        next += 1 + count;
    }
    if (!ended) {
        warnings.push_back(table.name() + ": no map is marked as the last one; the table ends them");
    }
    return true;
}

}  // namespace

SFDP_SECTOR_MAPS read_sector_maps(const SFDP_TABLE& table, const SFDP::BASIC_TABLE& basic, SFDP_WARNINGS& warnings) {
    SFDP_SECTOR_MAPS result;
    std::size_t next = 0;
    while (next + 1 < table.words.size() && !is_map(table.words[next])) {
        result.commands.push_back(command_from(table.words[next], table.words[next + 1]));
        next += 2;
    }
    if (next >= table.words.size() || !is_map(table.words[next])) {
        warnings.push_back(table.name() + ": it has no map; it is not used");
        return {};
    }
    return read_maps(table, next, basic, result, warnings) ? result : SFDP_SECTOR_MAPS{};
}

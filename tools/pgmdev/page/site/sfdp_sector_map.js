// The Sector Map Parameter Table of SFDP: descriptors of commands, two words each, and behind them descriptors of maps,
// one word and one for each region.

const is_map = (word) => bits(word, 1, 1) !== 0;
const ends_sequence = (word) => bits(word, 0, 0) !== 0;

function map_command(word, address) {
    const clocks = bits(word, 19, 16);
    return {
        opcode: bits(word, 15, 8),
        address_bytes: [0, 3, 4][bits(word, 23, 22)] ?? null,
        address,
        wait_clocks: clocks !== 15 ? clocks : null, // 15: as the chip is set
        mask: bits(word, 31, 24),
    };
}

function region_of(word, offset) {
    return {
        offset,
        bytes: (bits(word, 31, 8) + 1) * 256,
        erase_types: [1, 2, 3, 4].filter((type) => bits(word, type - 1, type - 1) === 1),
    };
}

/// Whether the map is one of the flash.
function map_fits(map, place, basic, warnings) {
    const is_known = (type) => basic.erase_types.some((known) => known.number === type);
    for (const region of map.regions) {
        const at = `${sfdp_hex(region.offset % 2 ** 32)}h`;
        if (region.erase_types.length === 0) {
            warnings.push(`${place}: nothing erases the region at ${at}`);
        } else if (!region.erase_types.every(is_known)) {
            warnings.push(`${place}: the region at ${at} names an erase type that the basic table does not have`);
        }
    }
    const last = map.regions[map.regions.length - 1];
    const end = last.offset + last.bytes;
    if (basic.bytes !== 0 && end !== basic.bytes) {
        warnings.push(
            `${place}: its regions end at ${whole(end)} bytes, the chip has ${whole(basic.bytes)}; it is not ` + "used",
        );
        return false;
    }
    return true;
}

/// The words from `next` on as maps. Null: they are none, and `warnings` says why.
function read_maps(table, next, basic, warnings) {
    const maps = [];
    let ended = false;
    while (next < table.words.length && !ended) {
        const word = table.words[next];
        const place = `${table.name} word ${next + 1}`;
        const count = bits(word, 23, 16) + 1;
        const more = table.words.length - next - 1;
        if (!is_map(word)) {
            warnings.push(`${place}: a command behind a map, expected a map; the table is not used`);
            return null;
        }
        if (count > more) {
            warnings.push(`${place}: a map of ${count} regions, the table has ${more} more words; it is not used`);
            return null;
        }
        const map = { id: bits(word, 15, 8), regions: [] };
        let offset = 0;
        for (let i = 0; i < count; ++i) {
            map.regions.push(region_of(table.words[next + 1 + i], offset));
            offset += map.regions[i].bytes;
        }
        if (map_fits(map, `${place} (map ${map.id})`, basic, warnings)) {
            maps.push(map);
        }
        ended = ends_sequence(word);
        next += 1 + count;
    }
    if (!ended) {
        warnings.push(`${table.name}: no map is marked as the last one; the table ends them`);
    }
    return maps;
}

function read_sector_maps(table, basic, warnings) {
    const commands = [];
    let next = 0;
    while (next + 1 < table.words.length && !is_map(table.words[next])) {
        commands.push(map_command(table.words[next], table.words[next + 1]));
        next += 2;
    }
    if (next >= table.words.length || !is_map(table.words[next])) {
        warnings.push(`${table.name}: it has no map; it is not used`);
        return { commands: [], maps: [] };
    }
    const maps = read_maps(table, next, basic, warnings);
    return maps === null ? { commands: [], maps: [] } : { commands, maps };
}

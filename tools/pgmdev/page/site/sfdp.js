// What a flash says of itself, from the bytes of a dump: the answer of `pgmdev flash sfdp`.

const SFDP_SIGNATURE = [0x53, 0x46, 0x44, 0x50];
const SFDP_HEADER_BYTES = 8; // of the SFDP header, and of each parameter header
const SFDP_KNOWN_MAJOR = 1; // another one would be another format
const SFDP_BASIC_WORDS = 9; // as few as the first edition of the standard gives the basic table
const BASIC_ID = 0xff00;
const SECTOR_MAP_ID = 0xff81;
const FOUR_BYTE_ID = 0xff84;

const SFDP_TABLE_NAMES = new Map([
    [BASIC_ID, "basic"],
    [0xff03, "replay-protected counters"],
    [0xff05, "xSPI profile 1"],
    [0xff06, "xSPI profile 2"],
    [0xff09, "register map, xSPI profile 2"],
    [0xff0a, "octal DDR sequences"],
    [0xff0c, "quad with data strobe"],
    [SECTOR_MAP_ID, "sector map"],
    [FOUR_BYTE_ID, "4-byte instructions"],
    [0xff87, "register map"],
    [0xff88, "register map, several dies"],
    [0xff8b, "long latency"],
    [0xff8d, "quad DDR sequences"],
    [0xff8e, "secure packets"],
]);
const SFDP_EDITIONS = [
    [0, "JESD216"],
    [5, "JESD216A"],
    [6, "JESD216B"],
    [7, "JESD216C"],
    [8, "JESD216D"],
    [9, "JESD216E"],
    [10, "JESD216F"],
]; // from which minor revision on
const ADDRESS_TEXTS = ["3", "3 or 4", "4", "reserved"];

function in_bytes(count) {
    return `${count} ${count === 1 ? "byte" : "bytes"}`;
}

function describe_refusal({ offset, field, found, expected }) {
    return `byte ${sfdp_hex(offset)}h, ${field}: found ${found}, expected ${expected}`;
}

/// What probably happened that the signature is not where it should be; "": nobody knows.
function signature_hint(bytes) {
    for (let before = 1; before <= 8 && before + SFDP_SIGNATURE.length <= bytes.length; ++before) {
        if (SFDP_SIGNATURE.every((byte, i) => bytes[before + i] === byte)) {
            return `; it stands ${in_bytes(before)} later: take those before it away`;
        }
    }
    return are_all(bytes, 0x00) || are_all(bytes, 0xff)
        ? ", and nothing else: the flash has no SFDP, or nobody drives the data line"
        : "";
}

/// Why there is no area at the beginning of the bytes; null: there is one.
function header_refusal(bytes) {
    const expected = '53 46 44 50 ("SFDP")';
    for (const [i, byte] of SFDP_SIGNATURE.entries()) {
        if (i === bytes.length) {
            return { offset: i, field: "signature", found: "the end of the dump", expected };
        }
        if (bytes[i] !== byte) {
            return {
                offset: i,
                field: "signature",
                found: hex_bytes(bytes.slice(0, SFDP_SIGNATURE.length)) + signature_hint(bytes),
                expected,
            };
        }
    }
    if (bytes.length < 2 * SFDP_HEADER_BYTES) {
        return {
            offset: bytes.length,
            field: bytes.length < SFDP_HEADER_BYTES ? "SFDP header" : "first parameter header",
            found: "the end of the dump",
            expected: "16 bytes for both headers",
        };
    }
    if (bytes[5] !== SFDP_KNOWN_MAJOR) {
        return { offset: 5, field: "major revision of the SFDP header", found: String(bytes[5]), expected: "1" };
    }
    return null;
}

/// A double word; its bytes are there.
function sfdp_word(bytes, offset) {
    return ((bytes[offset + 3] << 24) | (bytes[offset + 2] << 16) | (bytes[offset + 1] << 8) | bytes[offset]) >>> 0;
}

/// As many headers as the SFDP header counts, and not one more: behind them other bytes may stand.
function sfdp_headers(bytes, warnings) {
    const count = bytes[6] + 1;
    const headers = [];
    for (let i = 0; i < count; ++i) {
        const offset = SFDP_HEADER_BYTES * (1 + i);
        if (bytes.length < offset + SFDP_HEADER_BYTES) {
            warnings.push(
                `header ${i + 1} of ${count} at ${sfdp_hex(offset)}h: the dump ends after ` +
                    `${in_bytes(bytes.length)}; no further header is read`,
            );
            break;
        }
        const [word1, word2] = [sfdp_word(bytes, offset), sfdp_word(bytes, offset + 4)];
        headers.push({
            id: (bits(word2, 31, 24) << 8) | bits(word1, 7, 0),
            minor: bits(word1, 15, 8),
            major: bits(word1, 23, 16),
            words: bits(word1, 31, 24),
            offset: bits(word2, 23, 0),
        });
    }
    return headers;
}

function sfdp_table_name(id) {
    return SFDP_TABLE_NAMES.get(id) ?? "vendor";
}

/// Why the table behind a header cannot be read; null: it can.
function table_refusal(bytes, header, least_words) {
    const name = `${sfdp_table_name(header.id)} table`;
    const end = header.offset + header.words * 4;
    const refusal = (offset, field, found, expected) => ({ offset, field, found, expected });
    if (header.major !== SFDP_KNOWN_MAJOR) {
        return refusal(header.offset, `major revision of the ${name}`, String(header.major), "1");
    }
    if (header.words < least_words) {
        return refusal(
            header.offset,
            `length of the ${name}`,
            `${header.words} words`,
            `${least_words} words at least`,
        );
    }
    if (header.offset < 2 * SFDP_HEADER_BYTES) {
        return refusal(
            header.offset,
            `offset of the ${name}`,
            `${sfdp_hex(header.offset)}h`,
            "10h at least, behind the headers",
        );
    }
    if (end > bytes.length) {
        return refusal(
            Math.max(bytes.length, header.offset),
            name,
            `a dump of ${in_bytes(bytes.length)}`,
            `${header.words} words, up to ${sfdp_hex(end)}h`,
        );
    }
    return null;
}

function sfdp_table(bytes, header) {
    const name = `${sfdp_table_name(header.id)} table at ${sfdp_hex(header.offset)}h`;
    const words = Array.from({ length: bytes ? header.words : 0 }, (unused, i) =>
        sfdp_word(bytes, header.offset + 4 * i),
    );
    return {
        name,
        words,
        has: (number) => number <= words.length,
        word: (number) => words[number - 1],
        place: (number) => `${name} word ${number}`,
    };
}

/// The newest table of a kind that can be read, null for none. `refusals` receives why those before it cannot.
function newest_table(bytes, headers, id, least_words, warnings, refusals) {
    const wanted = headers
        .filter((header) => header.id === id)
        .sort((a, b) => ((b.major << 8) | b.minor) - ((a.major << 8) | a.minor));
    for (const header of wanted) {
        const damage = table_refusal(bytes, header, least_words);
        if (damage === null) {
            return sfdp_table(bytes, header);
        }
        refusals.push(damage);
        warnings.push(`${sfdp_table(null, header).name}: ${describe_refusal(damage)}; it is not used`);
    }
    return null;
}

/// `refusal` is null, or why nothing can be read.
function read_sfdp(bytes) {
    const sfdp = { refusal: header_refusal(bytes), warnings: [] };
    if (sfdp.refusal) {
        return sfdp;
    }
    const { warnings } = sfdp;
    const refusals = [];
    Object.assign(sfdp, { minor: bytes[4], major: bytes[5], access_protocol: bytes[7] });
    sfdp.headers = sfdp_headers(bytes, warnings);
    const table = (id, least) => newest_table(bytes, sfdp.headers, id, least, warnings, refusals);
    const basic = table(BASIC_ID, SFDP_BASIC_WORDS);
    if (!basic) {
        sfdp.refusal = refusals[0] ?? {
            offset: SFDP_HEADER_BYTES,
            field: "parameter headers",
            found: "no basic table",
            expected: "a header with the number FF00",
        };
        return sfdp;
    }
    sfdp.basic = read_basic_table(basic, warnings);
    const four = table(FOUR_BYTE_ID, 1);
    sfdp.four_byte = four ? read_four_byte_table(four, warnings) : null;
    for (const [number, opcode] of sfdp.four_byte?.erase ?? []) {
        sfdp.basic.erase_types
            .filter((type) => type.number === number)
            .forEach((type) => {
                type.opcode_4byte = opcode;
            });
    }
    const maps = table(SECTOR_MAP_ID, 1);
    const read = maps ? read_sector_maps(maps, sfdp.basic, warnings) : { commands: [], maps: [] };
    sfdp.map_commands = read.commands;
    sfdp.sector_maps = read.maps;
    sfdp.hybrid = read.maps.some((map) => map.regions.length > 1);
    return sfdp;
}

/// The largest erase type that may be used everywhere and has the usual opcode, or what comes nearest; null: none.
function sector_erase(sfdp) {
    const everywhere = (type) =>
        sfdp.sector_maps.every((map) => map.regions.every((region) => region.erase_types.includes(type.number)));
    const rank = (type) => (everywhere(type) ? 2 ** 40 : 0) + (type.opcode === 0xd8 ? 2 ** 36 : 0) + type.bytes;
    return sfdp.basic.erase_types.reduce(
        (best, type) => (best === null || rank(best) < rank(type) ? type : best),
        null,
    );
}

function sfdp_standard(minor) {
    const edition = SFDP_EDITIONS.filter(([from]) => from <= minor).pop()[1];
    return edition + (minor > SFDP_EDITIONS[SFDP_EDITIONS.length - 1][0] ? " or later" : "");
}

const or_null = (value, make) => (value === null ? null : make(value));

function byte_program_json({ first_byte_us: first, next_byte_us: next }) {
    return first === null
        ? null
        : {
              first_typical_us: first.typical,
              first_max_us: first.longest,
              next_typical_us: next.typical,
              next_max_us: next.longest,
          };
}

/// What the command gives of it.
function sfdp_json(sfdp) {
    const { basic, four_byte } = sfdp;
    return {
        kind: "sfdp",
        revision: `${sfdp.major}.${sfdp.minor}`,
        standard: sfdp_standard(sfdp.minor),
        access_protocol: sfdp.access_protocol,
        basic_dwords: basic.words,
        density_bits: basic.density_bits,
        size_bytes: basic.density_bits === null ? null : basic.bytes,
        address_bytes: ADDRESS_TEXTS[basic.address_code],
        erase_4k_uniform: basic.erase_4k_uniform,
        erase_4k_opcode: or_null(basic.erase_4k_opcode, hex_byte),
        write_granularity_bytes: basic.write_granularity,
        dtr: basic.dtr,
        fast_reads: basic.fast_reads.map((read) => ({
            mode: read.mode,
            opcode: hex_byte(read.opcode),
            mode_clocks: read.mode_clocks,
            wait_clocks: read.wait_clocks,
            dummy_clocks: read.mode_clocks + read.wait_clocks,
        })),
        erase_types: basic.erase_types.map((type) => ({
            type: type.number,
            size_bytes: type.bytes,
            opcode: hex_byte(type.opcode),
            typical_ms: type.ms?.typical ?? null,
            max_ms: type.ms?.longest ?? null,
            opcode_4byte: or_null(type.opcode_4byte, hex_byte),
        })),
        page_bytes: basic.page_bytes ?? 256,
        page_bytes_known: basic.page_bytes !== null,
        page_program: or_null(basic.page_program_us, (us) => ({ typical_us: us.typical, max_us: us.longest })),
        byte_program: byte_program_json(basic),
        chip_erase: or_null(basic.chip_erase_ms, (ms) => ({ typical_ms: ms.typical, max_ms: ms.longest })),
        status_polling: basic.status_polling,
        quad_enable: basic.quad_enable,
        soft_reset: basic.soft_reset,
        enter_4byte: basic.enter_4byte,
        exit_4byte: basic.exit_4byte,
        headers: sfdp.headers.map((header) => ({
            id: header.id.toString(16).toUpperCase().padStart(4, "0"),
            name: sfdp_table_name(header.id),
            revision: `${header.major}.${header.minor}`,
            dwords: header.words,
            offset: header.offset,
        })),
        four_byte_instructions: or_null(four_byte, (four) => ({
            dword1: four.word1,
            dword2: four.word2,
            support: four.support,
            erase_opcodes: Object.fromEntries(four.erase.map(([type, opcode]) => [type, hex_byte(opcode)])),
        })),
        map_commands: sfdp.map_commands.map((command) => ({
            ...command,
            opcode: hex_byte(command.opcode),
            mask: hex_byte(command.mask),
        })),
        sector_maps: sfdp.sector_maps.map((map) => ({
            id: map.id,
            regions: map.regions.map(({ offset, bytes, erase_types }) => ({ offset, size_bytes: bytes, erase_types })),
        })),
        hybrid: sfdp.hybrid,
        warnings: sfdp.warnings,
    };
}

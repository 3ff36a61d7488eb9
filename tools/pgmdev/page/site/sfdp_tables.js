// The tables of SFDP (JEDEC JESD216) that are understood, each from its double words, which count from 1. What is odd
// goes to `warnings`, with how it is taken.

const REACH_OF_3_BYTES = 1 << 24;

function sfdp_hex(value) {
    return value.toString(16).toUpperCase().padStart(2, "0");
}

/// The bits `high` to `low` of a double word.
function bits(word, high, low) {
    return (word >>> low) % 2 ** (high - low + 1);
}

/// A whole number in full, however large.
function whole(number) {
    return BigInt(number).toString();
}

const READS = [
    // the bit that says that it exists: word and bit; the half of a word that describes it: word and shift
    ["1-1-2", 1, 16, 4, 0],
    ["1-2-2", 1, 20, 4, 16],
    ["1-1-4", 1, 22, 3, 16],
    ["1-4-4", 1, 21, 3, 0],
    ["2-2-2", 5, 0, 6, 16],
    ["4-4-4", 5, 4, 7, 16],
    ["1S-1D-1D", 21, 0, 22, 0],
    ["1S-2D-2D", 21, 1, 22, 16],
    ["1S-4D-4D", 21, 2, 23, 0],
    ["4S-4D-4D", 21, 3, 23, 16],
];
const OCTAL_WORD = 17; // reading on eight lines has no bit of its own: an opcode says that it exists
const OCTAL_READS = [
    ["1-1-8", 16],
    ["1-8-8", 0],
];

const POLLING = [
    [2, "05 bit 0"],
    [3, "70 bit 7"],
];
const SOFT_RESET = [
    [8, "F on 4 lines, 8 clocks"],
    [9, "F on 4 lines, 10 clocks"],
    [10, "F on 4 lines, 16 clocks"],
    [11, "F0"],
    [12, "66 99"],
    [13, "leave 0-4-4 first"],
];
const EXIT_4BYTE = [
    [14, "E9"],
    [15, "06 E9"],
    [16, "extended address register C8/C5"],
    [17, "bank register 16/17"],
    [18, "configuration register B5/B1"],
    [19, "hardware reset"],
    [20, "software reset"],
    [21, "power cycle"],
];
const ENTER_4BYTE = [
    [24, "B7"],
    [25, "06 B7"],
    [26, "extended address register C8/C5"],
    [27, "bank register 16/17"],
    [28, "configuration register B5/B1"],
    [29, "4-byte instruction set"],
    [30, "always 4-byte"],
];
const QUAD_ENABLE = [
    "no quad enable bit",
    "status register 2 bit 1, 16-bit write (01), 8-bit write clears it",
    "status register 1 bit 6",
    "status register 2 bit 7, read 3F, write 3E",
    "status register 2 bit 1, 16-bit write (01)",
    "status register 2 bit 1, read 35, 16-bit write (01)",
    "status register 2 bit 1, read 35, write 31",
    "reserved",
];
const FOUR_BYTE_NAMES = [
    "read 13",
    "fast read 0C",
    "read 1-1-2 3C",
    "read 1-2-2 BC",
    "read 1-1-4 6C",
    "read 1-4-4 EC",
    "program 12",
    "program 1-1-4 34",
    "program 1-4-4 3E",
    "erase type 1",
    "erase type 2",
    "erase type 3",
    "erase type 4",
    "DTR read 0E",
    "DTR read 1-2-2 BE",
    "DTR read 1-4-4 EE",
];

const no_opcode = (opcode) => opcode === 0x00 || opcode === 0xff;
const named_bits = (word, names) => names.filter(([bit]) => bits(word, bit, bit) === 1).map(([, name]) => name);

function duration(typical, factor_code) {
    return { typical, longest: typical * 2 * (factor_code + 1) };
}

function read_of(mode, half) {
    return { mode, opcode: bits(half, 15, 8), mode_clocks: bits(half, 7, 5), wait_clocks: bits(half, 4, 0) };
}

function read_first_word(table, basic, warnings) {
    const word = table.word(1);
    const erase_code = bits(word, 1, 0);
    basic.erase_4k_uniform = erase_code === 1;
    if (erase_code === 0 || erase_code === 2) {
        warnings.push(
            `${table.place(1)}: the code of erase sizes is ${erase_code}, which is reserved; taken as no ` +
                "uniform 4 KiB erase",
        );
    }
    const opcode = bits(word, 15, 8);
    basic.erase_4k_opcode = opcode !== 0xff ? opcode : null;
    basic.write_granularity = bits(word, 2, 2) !== 0 ? 64 : 1;
    basic.address_code = bits(word, 18, 17);
    basic.dtr = bits(word, 19, 19) !== 0;
}

function read_density(table, basic, warnings) {
    const word = table.word(2);
    const number = bits(word, 30, 0);
    basic.density_bits = null;
    if (bits(word, 31, 31) === 0) {
        basic.density_bits = number + 1;
    } else if (number < 64) {
        basic.density_bits = 2 ** number;
    } else {
        warnings.push(
            `${table.place(2)}: 2 to the power of ${number} bits are more than any chip has, the size is not ` + "used",
        );
    }
    basic.bytes = Math.floor((basic.density_bits ?? 0) / 8);
    if (basic.density_bits !== null && basic.density_bits % 8 !== 0) {
        warnings.push(`${table.place(2)}: ${whole(basic.density_bits)} bits are no whole number of bytes`);
    }
    if (basic.address_code === 0 && basic.bytes > REACH_OF_3_BYTES) {
        warnings.push(`${table.name}: ${whole(basic.bytes)} bytes with 3-byte addresses only`);
    }
}

function read_fast_reads(table, basic, warnings) {
    basic.fast_reads = [];
    for (const [mode, support_word, support_bit, word, shift] of READS) {
        if (
            table.has(support_word) &&
            table.has(word) &&
            bits(table.word(support_word), support_bit, support_bit) === 1
        ) {
            const read = read_of(mode, table.word(word) >>> shift);
            if (no_opcode(read.opcode)) {
                warnings.push(
                    `${table.place(word)}: read ${mode} has the opcode ${sfdp_hex(read.opcode)}, which no read ` +
                        "has",
                );
            }
            basic.fast_reads.push(read);
        }
    }
    for (const [mode, shift] of table.has(OCTAL_WORD) ? OCTAL_READS : []) {
        const read = read_of(mode, table.word(OCTAL_WORD) >>> shift);
        if (!no_opcode(read.opcode)) {
            basic.fast_reads.push(read);
        }
    }
}

/// Word 10: where count and unit of an erase type's time stand.
function erase_time(table, number) {
    if (!table.has(10)) {
        return null;
    }
    const word = table.word(10);
    const low = 4 + 7 * (number - 1);
    const unit = [1, 16, 128, 1000][bits(word, low + 6, low + 5)];
    return duration((bits(word, low + 4, low) + 1) * unit, bits(word, 3, 0));
}

/// Why an erase type is not used; "": it is.
function erase_obstacle(exponent, opcode, basic) {
    if (no_opcode(opcode)) {
        return `has the opcode ${sfdp_hex(opcode)}, which erases nothing`;
    }
    if (exponent > 31 || (basic.bytes !== 0 && 2 ** exponent > basic.bytes)) {
        return `would erase 2 to the power of ${exponent} bytes, more than the chip has`;
    }
    return "";
}

function read_erase_types(table, basic, warnings) {
    basic.erase_types = [];
    for (let number = 1; number <= 4; ++number) {
        const word = number <= 2 ? 8 : 9;
        const half = table.word(word) >>> (number % 2 === 1 ? 0 : 16);
        const exponent = bits(half, 7, 0);
        const opcode = bits(half, 15, 8);
        if (exponent === 0) {
            continue; // it does not exist
        }
        const obstacle = erase_obstacle(exponent, opcode, basic);
        if (obstacle !== "") {
            warnings.push(`${table.place(word)}: erase type ${number} ${obstacle}; it is not used`);
            continue;
        }
        basic.erase_types.push({
            number,
            bytes: 2 ** exponent,
            opcode,
            ms: erase_time(table, number),
            opcode_4byte: null,
        });
    }
}

function read_program_times(table, basic) {
    const word = table.has(11) ? table.word(11) : null;
    const time = (high, low, unit) =>
        word === null ? null : duration((bits(word, high, low) + 1) * unit, bits(word, 3, 0));
    basic.page_bytes = word === null ? null : 2 ** bits(word, 7, 4);
    basic.page_program_us = time(12, 8, [8, 64][bits(word, 13, 13)]);
    basic.first_byte_us = time(17, 14, [1, 8][bits(word, 18, 18)]);
    basic.next_byte_us = time(22, 19, [1, 8][bits(word, 23, 23)]);
    basic.chip_erase_ms = time(28, 24, [16, 256, 4000, 64000][bits(word, 30, 29)]);
}

/// Word 16. Chips with 3-byte addresses only leave all bits of it set.
function read_modes(table, basic, warnings) {
    if (!table.has(16)) {
        basic.soft_reset = basic.enter_4byte = basic.exit_4byte = null;
        return;
    }
    const word = table.word(16);
    basic.soft_reset = named_bits(word, SOFT_RESET);
    basic.enter_4byte = named_bits(word, ENTER_4BYTE);
    basic.exit_4byte = named_bits(word, EXIT_4BYTE);
    const every_way_in = basic.enter_4byte.length === ENTER_4BYTE.length;
    const every_way_out = basic.exit_4byte.length === EXIT_4BYTE.length;
    if (every_way_in) {
        warnings.push(`${table.place(16)}: every way into 4-byte mode is set, none believed`);
        basic.enter_4byte = [];
    } else if (every_way_out) {
        warnings.push(`${table.place(16)}: every way out of 4-byte mode is set, none believed`);
    }
    if (every_way_out) {
        basic.exit_4byte = [];
    }
}

function read_basic_table(table, warnings) {
    const basic = { words: table.words.length };
    read_first_word(table, basic, warnings);
    read_density(table, basic, warnings);
    read_fast_reads(table, basic, warnings);
    read_erase_types(table, basic, warnings);
    read_program_times(table, basic);
    basic.status_polling = table.has(14) ? named_bits(table.word(14), POLLING) : null;
    const quad = table.has(15) ? bits(table.word(15), 22, 20) : null;
    basic.quad_enable = quad === null ? null : { code: quad, meaning: QUAD_ENABLE[quad] };
    read_modes(table, basic, warnings);
    return basic;
}

function read_four_byte_table(table, warnings) {
    if (!table.has(2)) {
        warnings.push(`${table.name}: ${table.words.length} words, expected 2; it is not used`);
        return null;
    }
    const [word1, word2] = [table.word(1), table.word(2)];
    const four = {
        word1,
        word2,
        support: FOUR_BYTE_NAMES.filter((unused, bit) => bits(word1, bit, bit) === 1),
        erase: [],
    };
    for (let type = 1; type <= 4; ++type) {
        const opcode = bits(word2, 8 * type - 1, 8 * type - 8);
        if (bits(word1, 8 + type, 8 + type) === 0) {
            continue;
        }
        if (no_opcode(opcode)) {
            warnings.push(
                `${table.name} word 2: erase type ${type} has the opcode ${sfdp_hex(opcode)}, which erases ` +
                    "nothing; it is not used",
            );
            continue;
        }
        four.erase.push([type, opcode]);
    }
    return four;
}

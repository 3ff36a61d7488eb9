// Responses that no chip gives, in words. Each way in which a response can go wrong is undone; what a record then
// matches was probably sent.

const CONTINUATION_CODE = 0x7f;
const READ_IDENTIFICATION = 0x9f;
const PLAIN_LENGTH = 3; // maker, type, capacity
const MOST_BEFORE = 8; // bytes that may stand before an identification
const MOST_NAMED = 4;

function are_all(bytes, value) {
    return bytes.length > 0 && bytes.every((byte) => byte === value);
}

/// How many bytes of the response tell something: not those behind an identification that only repeat it, or that are
/// what an idle bus has.
function telling_bytes_of(response) {
    if (response.length <= PLAIN_LENGTH) {
        return response.length;
    }
    const rest = response.slice(PLAIN_LENGTH);
    const repeats = rest.every((byte, i) => byte === response[i]);
    return repeats || are_all(rest, 0x00) || are_all(rest, 0xff) ? PLAIN_LENGTH : response.length;
}

/// The first record all of whose bytes are there. A signature is too short to tell a mistake by.
function record_that_takes(response) {
    return FLASH.records.findIndex(
        (record) => !record.silicon_id && record.memory_type_index !== NONE && is_met_by(record, response),
    );
}

function full_name(record) {
    return `${record.manufacturer_name} ${record.device_name}`;
}

function oddity(kind, text, index = -1) {
    return { kind, text, index: index < 0 ? null : index };
}

function idle_oddity(response) {
    if (are_all(response, 0x00)) {
        return oddity(
            "idle",
            "all zeros: the data line is held low; look for a missing pull-up, a chip without supply or held in " +
                "reset, or swapped lines",
        );
    }
    if (are_all(response, 0xff)) {
        return oddity(
            "idle",
            "all ones: nobody drives the data line; look at chip select, at the supply, and for a chip in deep " +
                "power-down or in a mode of four lines",
        );
    }
    return null;
}

function continuation_oddity(response) {
    const begin = response.findIndex((byte) => byte !== CONTINUATION_CODE);
    if (begin === 0) {
        return null;
    }
    if (begin < 0) {
        return oddity(
            "continuation",
            "continuation codes (7F) only: the maker's number comes behind them; read more bytes",
        );
    }
    const index = record_that_takes(response.slice(begin));
    const text =
        `${begin} continuation ${begin === 1 ? "code" : "codes"} (7F): the maker's number ` +
        `${hex_byte(response[begin])} is one of bank ${begin + 1} of the makers' list, and no record has that`;
    return oddity(
        "continuation",
        index < 0 ? text : `${text}; without the codes it would be ${full_name(FLASH.records[index])}`,
        index,
    );
}

function stuck_oddity(response) {
    if (response.length < 2 || !are_all(response, response[0])) {
        return null;
    }
    return oddity(
        "stuck",
        "the same byte again and again: each byte is a read of its own; keep chip select low and go on clocking",
    );
}

function late_oddity(response) {
    for (let before = 1; before <= MOST_BEFORE && before + PLAIN_LENGTH <= response.length; ++before) {
        const rest = response.slice(before);
        const index = record_that_takes(rest);
        if (index >= 0) {
            return oddity(
                "late",
                `the first ${before === 1 ? "byte" : `${before} bytes`}, ${hex_bytes(response.slice(0, before))}, ` +
                    `${before === 1 ? "stands" : "stand"} before the identification (the command's own byte, or a read ` +
                    `begun too early): ${hex_bytes(rest)} would be ${full_name(FLASH.records[index])}`,
                index,
            );
        }
    }
    return null;
}

/// A read of just so many bytes that begins one too early shows no more than maker and type.
function late_and_cut_oddity(response) {
    if (response.length !== PLAIN_LENGTH) {
        return null;
    }
    const [before, maker, type] = response;
    const is_none = [0x00, 0xff, READ_IDENTIFICATION, maker].includes(before);
    const begins = FLASH.records.find(
        (record) =>
            !record.silicon_id &&
            record.mfc_id_index === 0 &&
            record.mfc_id === maker &&
            record.memory_type_index === 1 &&
            record.memory_type === type,
    );
    if (!is_none || !begins) {
        return null;
    }
    return oddity(
        "late",
        `the first byte, ${hex_byte(before)}, probably stands before the identification (the command's own byte, or a ` +
            `read begun too early): ${hex_bytes(response.slice(1))} begin those of ${begins.manufacturer_name}; read one ` +
            "byte more",
    );
}

/// The response moved by one bit, with `filling` where a bit is not known.
function shifted(response, to_the_left, filling) {
    const bytes = [...response];
    let carry = filling;
    const move = (i) => {
        const byte = bytes[i];
        bytes[i] = to_the_left ? ((byte << 1) & 0xff) | carry : (byte >> 1) | (carry << 7);
        carry = to_the_left ? byte >> 7 : byte & 1;
    };
    const places = bytes.map((unused, i) => i);
    (to_the_left ? places.reverse() : places).forEach(move);
    return bytes;
}

/// One bit was not read: two records may take what is known.
function shifted_oddity(response) {
    for (const to_the_left of [true, false]) {
        let found = null;
        for (const filling of [0, 1]) {
            const bytes = shifted(response, to_the_left, filling);
            const index = record_that_takes(bytes);
            if (index < 0 || index === found?.index) {
                continue;
            }
            const sent = `${hex_bytes(bytes)}, ${full_name(FLASH.records[index])}`;
            if (found !== null) {
                found.text += `, or ${sent}: one bit was not read`;
                continue;
            }
            found = oddity(
                "shifted",
                `one clock too ${to_the_left ? "few" : "many"} before the first byte was read: shifted by one bit ` +
                    `it is ${sent}`,
                index,
            );
        }
        if (found !== null) {
            return found;
        }
    }
    return null;
}

/// Tools that keep the identification in a number print the maker last.
function reversed_oddity(response) {
    const zeros = response.length > PLAIN_LENGTH && response[0] === 0 ? 1 : 0; // of a number of 32 bits
    const bytes = response.slice(zeros).reverse();
    const index = bytes.length === PLAIN_LENGTH ? record_that_takes(bytes) : -1;
    return index < 0
        ? null
        : oddity(
              "reversed",
              `the last byte stands first, as in a number: ${hex_bytes(bytes)} would be ` +
                  full_name(FLASH.records[index]),
              index,
          );
}

/// The makers of which the response may be what follows their number.
function first_byte_oddity(response) {
    const makers = new Map();
    for (const [index, record] of FLASH.records.entries()) {
        const fits =
            response.length >= 2 &&
            !record.silicon_id &&
            record.default_dev &&
            record.mfc_id_index === 0 &&
            record.memory_type_index === 1 &&
            record.memory_id_index === 2 &&
            record.memory_type === response[0] &&
            record.memory_id === response[1];
        if (fits && makers.size < MOST_NAMED && !makers.has(record.manufacturer_name)) {
            makers.set(record.manufacturer_name, index);
        }
    }
    if (makers.size === 0) {
        return null;
    }
    const guesses = [...makers.values()].map(
        (index) => `${hex_byte(FLASH.records[index].mfc_id)} for ${full_name(FLASH.records[index])}`,
    );
    return oddity(
        "first_byte_missing",
        `no maker has the number ${hex_byte(response[0])}: perhaps the first byte is missing, such as ` +
            guesses.join(", "),
        [...makers.values()][0],
    );
}

function repeated_oddity(response) {
    const repeats =
        response.length > PLAIN_LENGTH &&
        telling_bytes_of(response) === PLAIN_LENGTH &&
        response[PLAIN_LENGTH] === response[0];
    return repeats ? oddity("repeated", "the bytes from 3 on only repeat the first ones, and tell nothing") : null;
}

/// Null: nothing is odd. `is_taken`: a record takes the response.
function response_oddity(silicon_id, response, is_taken) {
    const idle = idle_oddity(response);
    if (idle || is_taken || silicon_id || response.length === 0) {
        return idle ?? repeated_oddity(response);
    }
    const is_known = FLASH.records.some(
        (record) => !record.silicon_id && record.mfc_id_index === 0 && record.mfc_id === response[0],
    );
    const looks = [
        continuation_oddity,
        stuck_oddity,
        late_oddity,
        late_and_cut_oddity,
        ...(is_known ? [] : [reversed_oddity, first_byte_oddity, shifted_oddity]),
    ];
    for (const look of looks) {
        const found = look(response);
        if (found) {
            return found;
        }
    }
    return null;
}

/// Whether no chip answers this.
function is_fault(found) {
    return found !== null && found.kind !== "repeated";
}

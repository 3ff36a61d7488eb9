// Which flash gives a response, and how sure that is: the answer of `pgmdev flash identify`.

const RESPONSE_SIZE = 256;
const NEAREST_COUNT = 5;
const SILICON_PREFIX = "silicon:";

/// "EF7017", or "silicon:13" for an electronic signature. What is none throws an Error.
function parse_question(text) {
    const trimmed = trim_white(text);
    const silicon_id = trimmed.slice(0, SILICON_PREFIX.length).toLowerCase() === SILICON_PREFIX;
    const digits = silicon_id ? trimmed.slice(SILICON_PREFIX.length) : trimmed;
    const bytes = bytes_of_hex_pairs(digits, " :-");
    if (bytes === null) {
        throw new Error(`"${digits}" is not an identification response: expected pairs of hexadecimal digits`);
    }
    if (bytes.length > RESPONSE_SIZE) {
        throw new Error(`an identification response has at most ${RESPONSE_SIZE} bytes`);
    }
    if (bytes.length === 0) {
        throw new Error("an identification response has at least one byte");
    }
    return { text, silicon_id, bytes };
}

/// The first record that the response, padded with zeros, meets; -1: none.
function taken_index(silicon_id, response) {
    const padded = [...response, ...new Array(RESPONSE_SIZE - response.length).fill(0)];
    return FLASH.records.findIndex((record) => record.silicon_id === silicon_id && is_met_by(record, padded));
}

function is_open(record, telling) {
    return comparisons_of(record).some(({ position }) => position >= telling);
}

/// Whether the taken record compares a byte of the response that the other one does not.
function says_more(taken, other, telling) {
    return comparisons_of(taken).some(({ position }) => position < telling && !compares_at(other, position));
}

function standing_of(record, taken, telling) {
    if (record === taken) {
        return "taken";
    }
    if (!taken || is_open(record, telling)) {
        return "open";
    }
    return !is_open(taken, telling) && says_more(taken, record, telling) ? "passed_over" : "alike";
}

/// Whether the byte is one that two digits allow, each of them a digit, "?" for any, or "[0-3]" for one out of a range.
function fits_pattern(pattern, byte) {
    const digits = pattern.match(/\[.-.\]|./g);
    return [...hex_byte(byte)].every((digit, i) => {
        const [first, last] = digits[i].length > 1 ? [digits[i][1], digits[i][3]] : [digits[i], digits[i]];
        return digits[i] === "?" || (first <= digit && digit <= last);
    });
}

function differing_bytes(identification, response) {
    return identification
        .slice(0, response.length)
        .map((expected, position) => ({ position, found: hex_byte(response[position]), expected }))
        .filter(({ position, expected }) => !fits_pattern(expected, response[position]));
}

/// Bytes that are not those of the device; of one with several identifications, the one that fits best counts.
function contradictions_of(device_name, response) {
    let fewest = null;
    for (const { device_name: name, bytes } of FLASH.identifications) {
        if (upper(name) === upper(device_name)) {
            const found = differing_bytes(bytes, response);
            fewest = fewest === null || found.length < fewest.length ? found : fewest;
        }
    }
    return fewest ?? [];
}

/// The devices of the table whose whole identification is known and is that of the response.
function fitting_devices(response) {
    const names = FLASH.identifications
        .filter(({ bytes }) => differing_bytes(bytes, response).length === 0)
        .map(({ device_name }) => device_name);
    return [...new Set(names)].filter((name) => FLASH.record_named(name) !== undefined);
}

/// What the notes know of a response of which the bytes tell something, without chips whose identification is another.
function ambiguities_of(telling) {
    return FLASH.ambiguities
        .filter(
            ({ response, telling_byte }) =>
                (telling_byte === null || telling_byte >= telling.length) &&
                response.length <= telling.length &&
                response.every((byte, i) => byte === telling[i]),
        )
        .map((each) => ({
            ...each,
            chips: each.chips.filter((chip) => contradictions_of(chip, telling).length === 0),
        }))
        .filter(({ chips }) => chips.length > 1)
        .sort((left, right) => RISKS.indexOf(left.risk) - RISKS.indexOf(right.risk))
        .map(({ chips, telling_byte, told_apart_by, risk, harm }) => ({
            chips: chips.map((name) => ({ device_name: name, in_table: FLASH.record_named(name) !== undefined })),
            telling_byte,
            told_apart_by,
            risk,
            harm,
        }));
}

/// Of the same maker and type by distance of the capacity, then of the same maker and capacity.
function nearest_indexes(response) {
    const distances = [];
    for (const [index, record] of FLASH.records.entries()) {
        const usual =
            !record.silicon_id &&
            record.default_dev &&
            record.mfc_id_index === 0 &&
            record.memory_id_index === 2 &&
            record.memory_type_index === 1;
        if (response.length < 3 || !usual || record.mfc_id !== response[0]) {
            continue;
        }
        const other_type = record.memory_type !== response[1] ? 1 : 0;
        const between = Math.abs(record.memory_id - response[2]);
        if (!other_type || between === 0) {
            distances.push([other_type, between, index]);
        }
    }
    distances.sort((a, b) => a[0] - b[0] || a[1] - b[1] || a[2] - b[2]);
    return distances.slice(0, NEAREST_COUNT).map(([, , index]) => index);
}

function named_record(index) {
    const { manufacturer_name, device_name } = FLASH.records[index];
    return { index, manufacturer_name, device_name };
}

function candidates_of(question, telling, taken) {
    const candidates = [];
    for (const [index, record] of FLASH.records.entries()) {
        if (record.silicon_id !== question.silicon_id || !admits(record, telling)) {
            continue;
        }
        const ruled_out =
            record !== taken && !question.silicon_id && contradictions_of(record.device_name, telling).length > 0;
        candidates.push({
            ...named_record(index),
            standing: ruled_out ? "ruled_out" : standing_of(record, taken, telling.length),
            compared: compared_bytes(record, telling.length),
            differs: taken && record !== taken ? differences_of(taken, record) : [],
        });
    }
    return candidates;
}

function is_possible(candidate) {
    return candidate.standing !== "passed_over" && candidate.standing !== "ruled_out";
}

function missing_bytes_of(candidates) {
    const positions = candidates
        .filter(is_possible)
        .flatMap(({ compared }) => compared.filter(({ given }) => !given).map(({ position }) => position));
    return [...new Set(positions)].sort((a, b) => a - b);
}

function leaves_no_other(candidates, question, telling, taken, odd) {
    return (
        taken !== undefined &&
        !question.silicon_id &&
        !is_fault(odd) &&
        !is_open(taken, telling.length) &&
        candidates.every(
            (each) =>
                each.standing === "taken" ||
                !is_possible(each) ||
                (each.differs.length === 0 && each.device_name === taken.device_name),
        )
    );
}

/// The records that a response may be, whether one takes it or not.
function possible_indexes(question) {
    const telling = question.bytes.slice(0, telling_bytes_of(question.bytes));
    const taken = FLASH.records[taken_index(question.silicon_id, question.bytes)];
    return candidates_of(question, telling, taken)
        .filter(is_possible)
        .map(({ index }) => index);
}

/// An element of `devices` in the command's answer. With `in_a_chain` false it is the answer to a line of a batch.
function identification(position, question, in_a_chain) {
    const telling = question.bytes.slice(0, telling_bytes_of(question.bytes));
    const index = taken_index(question.silicon_id, question.bytes);
    const taken = FLASH.records[index];
    const odd = response_oddity(question.silicon_id, question.bytes, index >= 0);
    const candidates = candidates_of(question, telling, taken);
    const ambiguities = question.silicon_id ? [] : ambiguities_of(telling);
    const contradictions = taken && !question.silicon_id ? contradictions_of(taken.device_name, telling) : [];
    const open = candidates.filter(({ standing }) => standing === "open").map((each) => each.index);
    const near = open.length > 0 || question.silicon_id ? open : nearest_indexes(question.bytes);
    return {
        position,
        mapped: taken !== undefined,
        index: taken ? index : null,
        ...(taken ? members_only(taken) : {}),
        given: question.bytes.length,
        telling: telling.length,
        by_hand: false,
        sure:
            leaves_no_other(candidates, question, telling, taken, odd) &&
            ambiguities.length === 0 &&
            contradictions.length === 0,
        missing_bytes: missing_bytes_of(candidates),
        ambiguities,
        contradictions,
        fitting: contradictions.length > 0 ? fitting_devices(telling) : [],
        oddity: odd,
        nearest: taken ? [] : near.map(named_record),
        [in_a_chain ? "candidates" : "admitted"]: taken ? candidates : [],
    };
}

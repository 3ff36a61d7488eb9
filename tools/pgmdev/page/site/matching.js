// What a record compares of a response.

/// At most three bytes of the response, each with its position.
function comparisons_of(record) {
    const all = [{ position: record.memory_id_index, value: record.memory_id }];
    if (!record.silicon_id) {
        if (record.memory_type_index !== NONE) {
            all.push({ position: record.memory_type_index, value: record.memory_type });
        }
        all.push({ position: record.mfc_id_index, value: record.mfc_id });
    }
    return all;
}

/// Whether no byte of the response contradicts; bytes that it has not may be anything.
function admits(record, response) {
    return comparisons_of(record).every(
        ({ position, value }) => position >= response.length || response[position] === value,
    );
}

/// Whether all that is compared is there and agrees.
function is_met_by(record, response) {
    return comparisons_of(record).every(({ position, value }) => response[position] === value);
}

function compares_at(record, position) {
    return comparisons_of(record).some((each) => each.position === position);
}

/// What it compares, by position, when `given` bytes of the response are known.
function compared_bytes(record, given) {
    return comparisons_of(record)
        .map(({ position, value }) => ({ position, expected: hex_byte(value), given: position < given }))
        .sort((a, b) => a.position - b.position);
}

/// A response that the record takes, as short as can be.
function own_response(record) {
    const response = [];
    for (const { position, value } of comparisons_of(record)) {
        response[position] = value;
    }
    return Array.from(response, (byte) => byte ?? 0);
}

// A record beside what the flash says of itself (SFDP).

function erase_of(sfdp, bytes) {
    return sfdp.basic.erase_types.find((type) => type.bytes === bytes) ?? null;
}

function duration_text(time, unit) {
    return `${time.typical} ${unit} typical, ${time.longest} ${unit} at most`;
}

/// `given` units of the record are `scale` of the flash's each.
function word_on_time(given, scale, time, unit, note = "") {
    return {
        text: `${duration_text(time, unit)}${given === 0 ? ", taken: the record has none" : ""}${note}`,
        agrees: given === 0 || given * scale >= time.typical,
    };
}

function word_on_sectors(record, sfdp) {
    const types = sfdp.basic.erase_types.map((type) => `${type.bytes} bytes with ${hex_byte(type.opcode)}`);
    return types.length === 0
        ? null
        : {
              text: types.join(", ") + (sfdp.hybrid ? "; not all everywhere (sector map)" : ""),
              agrees: erase_of(sfdp, record.device_sector_byte) !== null,
          };
}

function word_on_addresses(record, sfdp) {
    const { basic, four_byte } = sfdp;
    const has_opcodes = four_byte !== null && four_byte.support.length > 0;
    const has_mode = basic.enter_4byte !== null && basic.enter_4byte.length > 0;
    const takes_4 = basic.address_code === 1 || basic.address_code === 2 || has_opcodes || has_mode;
    const takes_3 = basic.address_code !== 2;
    return {
        text:
            `${ADDRESS_TEXTS[basic.address_code]}-byte addresses${has_mode ? ", a 4-byte mode" : ""}` +
            (has_opcodes ? ", opcodes with 4" : ""),
        agrees: record.byte4_addressing ? takes_4 : takes_3 && basic.bytes <= REACH_OF_3_BYTES,
    };
}

function word_on_flag_status(record, sfdp) {
    const polling = sfdp.basic.status_polling;
    if (polling === null || polling.length === 0) {
        return null;
    }
    const has_flag_status = polls_flag_status(sfdp.basic);
    return {
        text: `ready by ${polling.join(" or ")}`,
        agrees: record.flag_status ? has_flag_status : !(has_flag_status && polling.length === 1),
    };
}

function word_on_single_bytes(record, sfdp) {
    const single = sfdp.basic.write_granularity === 1;
    return {
        text: single ? "written by single bytes" : "written by 64 bytes or more",
        agrees: !record.aai_mode || single,
    };
}

function word_on_bulk_erase(record, sfdp) {
    const die = sfdp.basic.chip_erase_ms;
    if (die === null) {
        return null;
    }
    const dies = Math.max(record.die_count, 1);
    const word = word_on_time(record.bulk_erase_time, 1000, die, "ms", dies > 1 ? `, each of ${dies} dies` : "");
    word.agrees = record.bulk_erase_time === 0 || record.bulk_erase_time * 1000 >= die.typical * dies;
    return word;
}

function word_on_sector_erase(record, sfdp) {
    const type = erase_of(sfdp, record.device_sector_byte) ?? sector_erase(sfdp);
    if (type === null || type.ms === null) {
        return null;
    }
    return word_on_time(
        record.sec_erase_time,
        1000,
        type.ms,
        "ms",
        type.bytes !== record.device_sector_byte ? ` (of ${type.bytes} bytes)` : "",
    );
}

function word_on_program(record, sfdp) {
    const time = record.aai_mode ? sfdp.basic.first_byte_us : sfdp.basic.page_program_us;
    return time === null ? null : word_on_time(record.program_utime, 1, time, "us");
}

const WORDS_ON_MEMBERS = [
    [
        "device_bit_size",
        (record, { basic: { density_bits } }) =>
            density_bits === null
                ? null
                : { text: `${whole(density_bits)} bits`, agrees: density_bits === record.device_bit_size },
    ],
    ["device_sector_byte", word_on_sectors],
    ["byte4_addressing", word_on_addresses],
    ["flag_status", word_on_flag_status],
    ["aai_mode", word_on_single_bytes],
    ["bulk_erase_time", word_on_bulk_erase],
    ["sec_erase_time", word_on_sector_erase],
    ["program_utime", word_on_program],
];

/// The members that the flash has a word on, as the command gives them.
function compare_with_sfdp(record, sfdp) {
    const members = [];
    for (const [name, ask] of WORDS_ON_MEMBERS) {
        const word = ask(record, sfdp);
        const member = FLASH.member_named.get(name);
        if (word !== null) {
            members.push({
                member: name,
                unit: member.unit,
                record: cell_text(member, record[name]),
                chip: word.text,
                agrees: word.agrees,
            });
        }
    }
    return members;
}

/// The records that the response may be, those first whose size and sectors the flash's own words leave.
function ranking_by_sfdp(question, device, sfdp) {
    const indexes = [...(device.mapped ? [device.index] : []), ...possible_indexes(question)];
    const names = indexes.map((index) => FLASH.records[index].device_name);
    const ranking = indexes
        .filter((index, i) => names.indexOf(names[i]) === i)
        .map((index) => ({
            ...named_record(index),
            contradicting: compare_with_sfdp(FLASH.records[index], sfdp)
                .filter(({ member, agrees }) => !agrees && /^device_(bit_size|sector_byte)$/.test(member))
                .map(({ member }) => member),
        }));
    const fits = ({ contradicting }) => contradicting.length === 0;
    return [...ranking.filter(fits), ...ranking.filter((each) => !fits(each))];
}

/// An element of `devices` in the answer of `pgmdev flash identify --sfdp`.
function identification_with_sfdp(question, sfdp) {
    const device = identification(0, question, true);
    const ranking = ranking_by_sfdp(question, device, sfdp);
    const is_another = ranking.some(({ index, contradicting }) => index === device.index && contradicting.length > 0);
    return {
        ...device,
        sure: device.sure && !is_another,
        comparison: device.mapped ? compare_with_sfdp(FLASH.records[device.index], sfdp) : null,
        ranking,
        sfdp: sfdp_json(sfdp),
        record: derived_record(sfdp, question.silicon_id ? [] : question.bytes),
    };
}

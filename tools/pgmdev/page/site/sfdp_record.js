// The record of a flash from its own words (SFDP). What these do not tell is assumed, and said to be.

const MBIT = 1 << 20;
const DENSITY_CLASSES = [
    [512, 32],
    [256, 25],
    [128, 24],
    [64, 22],
    [32, 21],
    [16, 20],
    [4, 18],
    [0, 16],
]; // from Mbit on
const MICRON_IDS = [0x20, 0x2c];
const SPANSION_ID = 0x01;

// Of flash that tells no times: longer than any known one of its kind takes.
const SECTOR_ERASE_S = 5;
const BULK_ERASE_S_PER_MBIT = 4;
const LONGEST_BULK_ERASE_S = 900;
const PROGRAM_US = 5000;

const whole_seconds = (ms) => Math.ceil(ms / 1000);
const polls_flag_status = (basic) => basic.status_polling !== null && basic.status_polling.includes(POLLING[1][1]);

function take_identification(id, record, assume) {
    const title_page = "a name for it: the title page of the data sheet has it";
    Object.assign(record, {
        manufacturer_name: "UNKNOWN",
        device_name: id.length === 0 ? "UNKNOWN" : `UNKNOWN-${id.slice(0, 6).map(hex_byte).join("")}`,
        mfc_id: id[0] ?? 0,
        memory_type: id[1] ?? 0,
        memory_id: id[2] ?? 0,
        mfc_id_index: 0,
        memory_type_index: 1,
        memory_id_index: 2,
        default_dev: true,
        ini: "NONE",
    });
    assume("manufacturer_name", title_page);
    assume("device_name", title_page);
    if (id.length < 3) {
        assume("memory_id", "00, and so are the other identification bytes that were not given");
    }
}

function take_geometry(sfdp, record, assume) {
    const size = sfdp.basic.density_bits;
    Object.assign(record, {
        device_bit_size: size,
        orvane_id: DENSITY_CLASSES.find(([mbit]) => size >= mbit * MBIT)[1],
        extended_mode: size > 128 * MBIT,
        byte4_addressing: size > 128 * MBIT || sfdp.basic.address_code === 2,
        die_count: 1,
        device_sector_byte: sector_erase(sfdp).bytes,
    });
    assume("die_count", "1: a chip does not tell how many dies it has");
    if (sfdp.hybrid) {
        assume(
            "device_sector_byte",
            "the largest that erase everywhere, or else the largest: regions differ (see the sector map)",
        );
    }
}

function take_times(sfdp, record, assume) {
    const { basic } = sfdp;
    const sector = sector_erase(sfdp).ms;
    record.sec_erase_time = sector ? whole_seconds(sector.longest) : SECTOR_ERASE_S;
    if (!sector) {
        assume("sec_erase_time", "5 s: the table has no word 10");
    }
    if (basic.page_program_us && basic.chip_erase_ms) {
        record.program_utime = basic.page_program_us.longest;
        record.bulk_erase_time = whole_seconds(basic.chip_erase_ms.longest);
        return;
    }
    const mbit = Math.max(Math.floor(basic.density_bits / MBIT), 1);
    record.program_utime = PROGRAM_US;
    record.bulk_erase_time = Math.min(mbit * BULK_ERASE_S_PER_MBIT, LONGEST_BULK_ERASE_S);
    assume("bulk_erase_time", "4 s for each Mbit, at most 900 s: the table has no word 11");
    assume("program_utime", "5000 us: the table has no word 11");
}

function take_flows(sfdp, record, assume) {
    record.flag_status = polls_flag_status(sfdp.basic);
    if (sfdp.basic.status_polling === null) {
        assume("flag_status", "FALSE: the table has no word 14");
    }
    record.micron_flow = MICRON_IDS.includes(record.mfc_id) && record.flag_status;
    record.spansion_flow = record.mfc_id === SPANSION_ID;
    assume("startup_protected", "FALSE: not told");
    assume(
        "aai_mode",
        sfdp.basic.write_granularity === 1
            ? "FALSE: not told, but it is written by single bytes (word 1 bit 2): look it up"
            : "FALSE: not told",
    );
}

function take_the_rest(record, assume) {
    Object.assign(record, { protection_division: NONE, bottom_value: NONE, asc_voltage: "3.3V" });
    assume("protection_mask", "00, no protection bits: not told, nor are value, unprotect value and division");
    assume("bottom_value", "255, no such bit: not told");
    assume("sdm_support", "FALSE: the supply voltage is not told");
    assume("asc_voltage", "3.3V: not told; make sure before you connect it");
}

/// A record that has nothing: empty texts, and 0 or false everywhere else.
function empty_record() {
    const sample = FLASH.rows[0];
    const nothing = { string: "", boolean: false, number: 0 };
    return Object.fromEntries(FLASH.members.map(({ name }) => [name, nothing[typeof sample[name]]]));
}

/// The record that follows, as the command gives it, for a flash that answers `id`; null: none does.
function derived_record(sfdp, id) {
    const size = sfdp.basic.density_bits;
    if (size === null || size < 8 || size > 0xffffffff || sfdp.basic.erase_types.length === 0) {
        return null;
    }
    const record = empty_record();
    const assumed = [];
    const assume = (member, taken) => assumed.push({ member, taken });
    take_identification(id, record, assume);
    take_geometry(sfdp, record, assume);
    take_times(sfdp, record, assume);
    take_flows(sfdp, record, assume);
    take_the_rest(record, assume);
    const row = FLASH.members.map((member) => cell_text(member, record[member.name])).join(", ");
    return { ...record, assumed, row };
}

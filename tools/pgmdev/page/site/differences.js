// What differs between two records, and what a mistake between them does.

const RISKS = ["data", "voltage", "protection", "flow", "time", "none"]; // the worst first

function size_in_bytes(bytes) {
    return bytes !== 0 && bytes % 1024 === 0 ? `${bytes / 1024} KiB` : `${bytes} bytes`;
}

function dies_text(dies) {
    return `${dies} ${dies === 1 ? "die" : "dies"}`;
}

function volts_of(voltage) {
    return Number(/^-?(\d+\.?\d*|\.\d+)(e[+-]?\d+)?/i.exec(voltage)?.[0] ?? 0);
}

function sector_harm(taken, other) {
    const sectors =
        `${size_in_bytes(other.device_sector_byte)} sectors: erasing by ` + size_in_bytes(taken.device_sector_byte);
    return other.device_sector_byte > taken.device_sector_byte
        ? `${sectors} would wipe the neighbours`
        : `${sectors} would leave the rest of each sector as it was`;
}

function capacity_harm(taken, other) {
    const bytes = (record) => Math.floor(record.device_bit_size / 8);
    const size = `${size_in_bytes(bytes(other))} of capacity: `;
    const driven = size_in_bytes(bytes(taken));
    return other.device_bit_size > taken.device_bit_size
        ? `${size}what is beyond ${driven} would be out of reach`
        : `${size}what is written beyond it, as if there were ${driven}, would overwrite the beginning`;
}

function dies_harm(taken, other) {
    const dies = `${dies_text(other.die_count)}: erasing ${dies_text(taken.die_count)}`;
    return other.die_count > taken.die_count
        ? `${dies} would leave the others as they were, or out of reach`
        : `${dies} would end in errors, or erase a die twice`;
}

function voltage_harm(taken, other) {
    return (
        `a part for ${other.asc_voltage}: ` +
        (volts_of(taken.asc_voltage) > volts_of(other.asc_voltage)
            ? `${taken.asc_voltage} on it may destroy it`
            : `at ${taken.asc_voltage} it neither reads nor writes reliably`)
    );
}

function mask_harm(taken, other) {
    const strange = taken.protection_mask & ~other.protection_mask;
    const missed = other.protection_mask & ~taken.protection_mask;
    return strange !== 0
        ? `status-register bits 0x${hex_byte(strange)} mean something else: writing the protection would change that`
        : `protected by status-register bits 0x${hex_byte(missed)}, too: blocks may stay protected`;
}

const protection_harm = () =>
    "protected and unprotected by other values: blocks may stay protected, or be unprotected unasked";
const flow_harm = () => "driven in another way: the operation may fail, or its failure may go unnoticed";
const time_harm = (member) => (taken, other) =>
    other[member] > taken[member] ? "takes longer: the operation may be given up before its end" : "";
const no_harm = () => "";

/// The members that matter for driving a flash: which risk a mistake is, and what it does.
const DIFFERENCE_RULES = [
    ["device_sector_byte", "data", sector_harm],
    ["device_bit_size", "data", capacity_harm],
    ["die_count", "data", dies_harm],
    [
        "byte4_addressing",
        "data",
        (taken, other) =>
            `${other.byte4_addressing ? "4-byte" : "3-byte"} addresses: with others, data would land in wrong places`,
    ],
    [
        "half_size",
        "data",
        (taken, other) =>
            other.half_size
                ? "only half of it may be used: what is beyond would be lost"
                : "all of it may be used: half would be out of reach",
    ],
    [
        "aai_mode",
        "data",
        (taken, other) =>
            other.aai_mode
                ? "programmed by address increment: programming by pages would write the first byte only"
                : "programmed by pages: programming by address increment would write nothing",
    ],
    ["asc_voltage", "voltage", voltage_harm],
    ["protection_mask", "protection", mask_harm],
    ["protection_value", "protection", protection_harm],
    ["unprotect_value", "protection", protection_harm],
    ["protection_division", "protection", protection_harm],
    ["bottom_value", "protection", protection_harm],
    [
        "startup_protected",
        "protection",
        (taken, other) =>
            other.startup_protected ? "protected after power-up: erasing and programming would do nothing" : "",
    ],
    ["micron_flow", "flow", flow_harm],
    ["spansion_flow", "flow", flow_harm],
    ["flag_status", "flow", flow_harm],
    ["bulk_erase_time", "time", time_harm("bulk_erase_time")],
    ["sec_erase_time", "time", time_harm("sec_erase_time")],
    ["program_utime", "time", time_harm("program_utime")],
    ["extended_mode", "none", no_harm],
    ["sdm_support", "none", no_harm],
];

/// The worst first. The harm is that of driving `other` as `taken` says.
function differences_of(taken, other) {
    const differences = [];
    for (const [name, risk, harm_of] of DIFFERENCE_RULES) {
        if (taken[name] !== other[name]) {
            const member = FLASH.member_named.get(name);
            const harm = harm_of(taken, other);
            differences.push({
                member: name,
                risk: harm === "" ? "none" : risk,
                taken: value_text(member, taken[name]),
                other: value_text(member, other[name]),
                harm,
            });
        }
    }
    return differences.sort((a, b) => RISKS.indexOf(a.risk) - RISKS.indexOf(b.risk));
}

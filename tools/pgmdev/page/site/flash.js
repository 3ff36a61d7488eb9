// The records of serial flash, and how their members are written.

/// As the library compares names: only ASCII letters have a case.
function upper(text) {
    return text.replace(/[a-z]+/g, (letters) => letters.toUpperCase());
}

const FLASH = (() => {
    const data = data_of("flash-data");
    const rows = rows_of(data.records);
    const evidence = data.evidence ? rows_of(data.evidence) : [];
    const place_of = new Map(rows.map((row, place) => [row, place]));
    const member_named = new Map(data.members.map((member) => [member.name, member]));
    const by_name = new Map();
    for (const row of rows) {
        if (row.default_dev && row.enabled && !by_name.has(upper(row.device_name))) {
            by_name.set(upper(row.device_name), row);
        }
    }
    const aliases = rows_of(data.aliases);
    const alias_by_name = new Map(aliases.map((alias) => [upper(alias.name), alias]));
    const aliases_of = new Map();
    for (const alias of aliases) {
        const key = upper(alias.device_name);
        if (!aliases_of.has(key)) {
            aliases_of.set(key, []);
        }
        aliases_of.get(key).push(alias);
    }
    const left_out = rows_of(data.left_out);
    return {
        members: data.members,
        member_named,
        rows,
        /// Those that programs use: the index of a record is its place among them.
        records: rows.filter((row) => row.enabled),
        place_of: (row) => place_of.get(row),
        evidence_of: (row) => evidence[place_of.get(row)],
        aliases_of: (row) => aliases_of.get(upper(row.device_name)) ?? [],
        ambiguities: data.ambiguities,
        identifications: data.identifications,
        /// The default record of a name.
        record_named: (name) => by_name.get(upper(name)),
        /// A further name: what it is called, the name of the record that it shares, and why.
        alias_named: (name) => alias_by_name.get(upper(name)),
        /// A sentence on why the table has no row for the chip of a name; undefined when none tells it.
        why_left_out: (name) => {
            const chip = left_out.find((each) => upper(each.name) === upper(name));
            return chip && `The flash "${name}" is left out of the table: ${chip.reason}.`;
        },
    };
})();

const NONE = 255; // no place, where a member names a byte of the response or a bit

function hex_byte(byte) {
    return byte.toString(16).toUpperCase().padStart(2, "0");
}

function hex_bytes(bytes) {
    return Array.from(bytes, hex_byte).join(" ");
}

/// A value as a cell of the source table.
function cell_text(member, value) {
    if (typeof value === "boolean") {
        return value ? "TRUE" : "FALSE";
    }
    return member.hex && typeof value === "number" ? `0x${hex_byte(value)}` : String(value);
}

/// The same with its unit.
function value_text(member, value) {
    return member.unit === "" ? cell_text(member, value) : `${cell_text(member, value)} ${member.unit}`;
}

/// A record with nothing but its members, as the command gives it.
function members_only(record) {
    return Object.fromEntries(FLASH.members.map((member) => [member.name, record[member.name]]));
}

// What a flash says of itself (SFDP), for people.

function sfdp_facts(sfdp) {
    const { basic } = sfdp;
    const list = (texts) => (texts === null || texts.length === 0 ? null : texts.join("; "));
    return facts([
        ["standard", `${sfdp_standard(sfdp.minor)} (revision ${sfdp.major}.${sfdp.minor})`],
        ["size", basic.density_bits === null ? null : `${size_text(basic.density_bits)} (${bytes_text(basic.bytes)})`],
        ["addresses", `${ADDRESS_TEXTS[basic.address_code]}-byte`],
        [
            "page",
            `${basic.page_bytes ?? 256} bytes` +
                (basic.page_program_us ? `, ${duration_text(basic.page_program_us, "us")}` : ""),
        ],
        ["chip erase", basic.chip_erase_ms ? duration_text(basic.chip_erase_ms, "ms") : null],
        ["ready", list(basic.status_polling)],
        ["quad enable", basic.quad_enable?.meaning ?? null],
        ["soft reset", list(basic.soft_reset)],
        ["into 4-byte mode", list(basic.enter_4byte)],
        ["out of it", list(basic.exit_4byte)],
        ["4-byte instructions", sfdp.four_byte ? list(sfdp.four_byte.support) : null],
        [
            "tables",
            sfdp.headers.map((header) => `${sfdp_table_name(header.id)} ${header.major}.${header.minor}`).join(", "),
        ],
    ]);
}

function erase_table(sfdp) {
    return data_table(
        "Erase types",
        ["bytes", "opcode", "time", "with 4-byte addresses"],
        sfdp.basic.erase_types.map((type) => [
            bytes_text(type.bytes),
            make("code", {}, hex_byte(type.opcode)),
            type.ms ? duration_text(type.ms, "ms") : "not told",
            type.opcode_4byte === null ? "" : make("code", {}, hex_byte(type.opcode_4byte)),
        ]),
    );
}

function reads_table(sfdp) {
    return data_table(
        "Ways of reading",
        ["lines", "opcode", "mode clocks", "wait clocks"],
        sfdp.basic.fast_reads.map((read) => [
            read.mode,
            make("code", {}, hex_byte(read.opcode)),
            String(read.mode_clocks),
            String(read.wait_clocks),
        ]),
    );
}

function maps_table(sfdp) {
    return data_table(
        "Sector maps",
        ["map", "region at", "bytes", "erase types"],
        sfdp.sector_maps.flatMap((map) =>
            map.regions.map((region) => [
                String(map.id),
                `0x${region.offset.toString(16).toUpperCase()}`,
                bytes_text(region.bytes),
                region.erase_types.join(", "),
            ]),
        ),
    );
}

function derived_part(record) {
    if (record === null) {
        return [make("p", {}, "No record follows from it: its size or its erase types are not told.")];
    }
    return [
        make("h3", {}, "The record that follows"),
        make("pre", { class: "row", tabindex: "0" }, record.row),
        data_table(
            "Members that nothing tells",
            ["member", "taken"],
            record.assumed.map(({ member, taken }) => [make("code", {}, member), taken]),
        ),
    ];
}

/// The flash's own words, with the record that follows from them.
function sfdp_part(sfdp, record) {
    return [
        make("h3", {}, "What the flash says of itself"),
        sfdp_facts(sfdp),
        erase_table(sfdp),
        reads_table(sfdp),
        sfdp.sector_maps.length > 0 ? maps_table(sfdp) : null,
        ...sfdp.warnings.map((warning) => make("p", { class: "oddity" }, `Odd: ${warning}.`)),
        ...derived_part(record),
    ].filter(Boolean);
}

/// Which of the chips that the response may be the flash's own words leave, as the command says it; "": there is but one.
function ranking_text(ranking) {
    const says = "What the flash says of itself";
    const contradicted = ranking.filter(({ contradicting }) => contradicting.length > 0);
    const fitting = ranking.filter((each) => !contradicted.includes(each)).map(({ device_name }) => device_name);
    const others = contradicted.map((each) => `${each.device_name} (${each.contradicting.join(", ")})`).join(", ");
    if (others === "") {
        return fitting.length > 1 ? `${says} leaves all of them: ${fitting.join(" or ")}` : "";
    }
    return fitting.length === 0
        ? `${says} decides: it is none of these: ${others}`
        : `${says} decides: ${fitting.join(" or ")}, and not ${others}`;
}

function ranking_part({ index, ranking }) {
    const text = ranking_text(ranking);
    const is_another = ranking.some((each) => each.index === index && each.contradicting.length > 0);
    return text === "" ? null : make("p", { class: is_another ? "ranking oddity" : "ranking" }, text);
}

/// The same beside the record of the table.
function known_sfdp_part(sfdp, answer) {
    const comparison =
        answer.comparison === null
            ? []
            : [
                  data_table(
                      "The record beside what the flash says of itself",
                      ["member", "record", "flash", "do they agree"],
                      answer.comparison.map(({ member, unit, record, chip, agrees }) => [
                          make("code", {}, member),
                          `${record} ${unit}`,
                          chip,
                          agrees ? "agrees" : make("strong", {}, "disagrees"),
                      ]),
                  ),
              ];
    return [ranking_part(answer), ...comparison, ...sfdp_part(sfdp, answer.record)].filter(Boolean);
}

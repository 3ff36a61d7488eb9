// One chip: what one must know first, all members with units and evidence, what else answers alike.

/// The members that each group of evidence is about.
const EVIDENCE_GROUPS = {
    identification: [
        "silicon_id",
        "memory_id",
        "memory_id_index",
        "memory_type",
        "memory_type_index",
        "mfc_id",
        "mfc_id_index",
    ],
    geometry: ["die_count", "device_bit_size", "device_sector_byte", "half_size"],
    voltage: ["asc_voltage"],
    opcodes: ["extended_mode", "micron_flow", "spansion_flow", "aai_mode", "flag_status", "byte4_addressing"],
    protection: [
        "startup_protected",
        "protection_mask",
        "protection_value",
        "unprotect_value",
        "protection_division",
        "bottom_value",
    ],
    times: ["bulk_erase_time", "sec_erase_time", "program_utime"],
};

const FEATURES = [
    ["flag_status", "flag status register"],
    ["micron_flow", "Micron flow"],
    ["spansion_flow", "Spansion flow"],
    ["startup_protected", "protected after power-up"],
    ["aai_mode", "auto address increment"],
    ["extended_mode", "extended addresses"],
    ["half_size", "half of the size is used"],
    ["sdm_support", "secure device manager"],
];

const STANDINGS = {
    taken: "taken",
    alike: "no byte tells it apart",
    open: "a byte to tell it apart is missing",
    passed_over: "the one taken compares more",
    ruled_out: "its identification is known to be another",
};

function summary_facts(row) {
    const features = FEATURES.filter(([member]) => row[member]).map(([, text]) => text);
    return facts([
        ["answers", make("code", {}, compared_text(row))],
        [
            "size",
            `${size_text(row.device_bit_size)} (${bytes_text(row.device_bit_size / 8)}), ` +
                `${counted(row.die_count, "die", "dies")}, sectors of ${bytes_text(row.device_sector_byte)}`,
        ],
        ["addressing", row.byte4_addressing ? "4-byte" : "3-byte"],
        ["erase", `whole device within ${seconds_text(row.bulk_erase_time)}, sector within ${row.sec_erase_time} s`],
        ["program", `within ${row.program_utime} us`],
        ["voltage", row.asc_voltage],
        ["features", features.join(", ")],
        ["switch", row.switch ?? ""],
    ]);
}

function evidence_of_member(row, name) {
    const group = Object.keys(EVIDENCE_GROUPS).find((each) => EVIDENCE_GROUPS[each].includes(name));
    const support = group && FLASH.evidence_of(row)?.[group];
    return support ? support.evidence + (support.sources.length > 0 ? ` (${support.sources.join(", ")})` : "") : "";
}

function members_table(row) {
    return data_table(
        "All members",
        ["member", "value", "evidence"],
        FLASH.members.map((member) => [
            make("code", {}, member.name),
            value_text(member, row[member.name]),
            evidence_of_member(row, member.name),
        ]),
        "members",
    );
}

/// Where candidates differ from the one that is taken.
function difference_list(differs) {
    return differs.length === 0
        ? "in nothing that matters"
        : make(
              "ul",
              {},
              differs.map(({ member, risk, taken, other, harm }) =>
                  make(
                      "li",
                      {},
                      make("span", { class: `risk ${risk}` }, risk),
                      ` ${member}: ${taken} → ${other}`,
                      harm === "" ? null : make("span", { class: "harm" }, ` ${harm}`),
                  ),
              ),
          );
}

function candidates_table(caption, candidates) {
    return data_table(
        caption,
        ["chip", "bytes compared", "standing", "differs from the one taken"],
        candidates.map(({ index, standing, differs }) => {
            const row = FLASH.records[index];
            return [
                chip_link(row),
                make("code", {}, compared_text(row)),
                STANDINGS[standing],
                standing === "taken" ? "" : difference_list(differs),
            ];
        }),
        "candidates",
    );
}

/// Those that are possible, and behind a click those that only their compared bytes admit.
function candidates_part(candidates) {
    const possible = candidates.filter(is_possible);
    const others = candidates.filter((each) => !is_possible(each));
    return [
        possible.length > 1 ? candidates_table("Chips that give these bytes", possible) : null,
        others.length > 0
            ? make(
                  "details",
                  {},
                  make(
                      "summary",
                      {},
                      `${counted(others.length, "row", "rows")} that would take these bytes, but not before this one`,
                  ),
                  candidates_table("Rows that would take these bytes", others),
              )
            : null,
    ].filter(Boolean);
}

function same_bytes_part(row) {
    if (!row.enabled) {
        return [make("p", {}, `Switched off: ${row.switch} enables it.`)];
    }
    const response = own_response(row);
    const question = `${row.silicon_id ? "silicon:" : ""}${hex_bytes(response)}`;
    const answer = identification(0, parse_question(question), true);
    return [
        make(
            "p",
            {},
            make("a", { href: `#/identify/${encodeURIComponent(question)}` }, `Identify ${question}`),
            answer.candidates.filter(is_possible).length > 1 ? "" : ": no other chip of the table answers so.",
        ),
        ...candidates_part(answer.candidates),
    ];
}

function aliases_part(row) {
    const aliases = FLASH.aliases_of(row);
    return aliases.length === 0
        ? []
        : [
              make("h3", {}, "Further names"),
              data_table(
                  "Names that share this record",
                  ["name", "why"],
                  aliases.map(({ name, reason }) => [name, reason]),
              ),
          ];
}

const is_near_in_size = (a, b) => Math.abs(density_class(a) - density_class(b)) <= 1;

/// The chip of a row; `alias`: the further name that led to it, if one did.
function chip_page(row, alias) {
    return [
        make("p", { class: "back" }, make("a", { href: "#/chips" }, "All chips")),
        make("h2", { tabindex: "-1" }, make("span", { class: "maker" }, row.manufacturer_name), ` ${row.device_name}`),
        alias
            ? make("p", { class: "alias" }, `${alias.name} shares the record of ${row.device_name}: ${alias.reason}.`)
            : null,
        summary_facts(row),
        ...aliases_part(row),
        make("h3", {}, "The same bytes"),
        ...same_bytes_part(row),
        make("h3", {}, "Block protection"),
        ...protection_part(row),
        make("h3", {}, "Erase time beside others"),
        make(
            "figure",
            {},
            erase_picture(
                FLASH.records.filter((each) => is_near_in_size(each, row)),
                row,
            ),
            make(
                "figcaption",
                {},
                "The longest erase of the whole chip, as the tool waits for it, of chips of this and " +
                    "the neighbouring sizes. The ring is this chip.",
            ),
        ),
        make("h3", {}, "Members"),
        members_table(row),
    ];
}

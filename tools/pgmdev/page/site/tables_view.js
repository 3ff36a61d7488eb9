// Boot flash, and programming profiles side by side.

const TABLES = data_of("tables-data");

const hex_number = (digits) => (value) => `0x${value.toString(16).toUpperCase().padStart(digits, "0")}`;

function boot_flash_view() {
    const kinds = rows_of(TABLES.hps_kinds);
    const members = Object.keys(kinds[0] ?? {}).filter(
        (name) => name !== "index" && name !== "user" && name !== "name",
    );
    const is_address = (name) => name === "id" || name.endsWith("_base");
    const number = (name, value) => (is_address(name) ? hex_number(8)(value) : String(value));
    const spi = rows_of(TABLES.hps_spi).map((row) => [
        row.device_name,
        row.manufacturer_name,
        make("code", {}, hex_number(6)(row.silicon_id)),
        row.ext_id_mask === 0 ? "" : make("code", {}, hex_byte(row.ext_id)),
        size_text(row.device_bit_size),
        bytes_text(row.device_sector_byte),
        `${row.page_byte} bytes`,
        String(row.die_count),
        make("code", {}, [row.erase_opcode, row.program_opcode, row.read_opcode].map(hex_byte).join(" ")),
        `${row.bulk_erase_time} s`,
        row.user ? "your own" : "built-in",
    ]);
    const nand = rows_of(TABLES.hps_nand).map((row) => [
        make("code", {}, hex_byte(row.manufacturer_id)),
        make("code", {}, hex_byte(row.device_id)),
        bytes_text(row.device_byte_size),
        row.user ? "your own" : "built-in",
    ]);
    return [
        make("h3", {}, "Serial flash"),
        data_table(
            "Serial flash that hard processor systems boot from",
            [
                "device",
                "maker",
                "silicon ID",
                "ext. ID",
                "size",
                "sector",
                "page",
                "dies",
                "erase, program, read",
                "chip erase",
                "from",
            ],
            spi,
        ),
        make("h3", {}, "NAND flash"),
        data_table("NAND flash that hard processor systems boot from", ["maker", "device", "size", "from"], nand),
        make("h3", {}, "Kinds of hard processor systems"),
        data_table(
            "Kinds of hard processor systems",
            ["member", ...kinds.map((kind) => kind.name)],
            members.map((name) => [make("code", {}, name), ...kinds.map((kind) => number(name, kind[name]))]),
        ),
    ];
}

const PROFILES_VIEW = (() => {
    const profiles = rows_of(TABLES.profiles);
    let chosen = [];

    function member_cell(member, value) {
        if (value === null || value === "") {
            return make("span", { class: "nothing" }, "–");
        }
        return typeof value === "boolean" ? (value ? "yes" : "no") : value_text(member, value);
    }

    function show() {
        const columns = chosen.map((index) => profiles[index]);
        const only_different = part("only-different").checked;
        const rows = TABLES.profile_members.filter(
            ({ name }) => !only_different || columns.some((profile) => profile[name] !== columns[0][name]),
        );
        part("profiles-chosen").replaceChildren(
            ...columns.map((profile) =>
                make(
                    "button",
                    {
                        type: "button",
                        "aria-label": `Leave out ${profile.key}`,
                        click: () => {
                            chosen = chosen.filter((index) => index !== profile.index);
                            show();
                            part("profile").focus();
                        },
                    },
                    `${profile.key} `,
                    make("span", { "aria-hidden": "true" }, "×"),
                ),
            ),
        );
        part("profiles-table").replaceChildren(
            columns.length === 0
                ? make("p", {}, "Choose a profile.")
                : data_table(
                      `${counted(rows.length, "member", "members")} of ${counted(columns.length, "profile", "profiles")}`,
                      ["member", ...columns.map((profile) => profile.key)],
                      rows.map((member) => [
                          make("code", {}, member.name),
                          ...columns.map((profile) => member_cell(member, profile[member.name])),
                      ]),
                      "profiles",
                  ),
        );
    }

    function open(index) {
        const number = place_in(index);
        if (profiles[number] && !chosen.includes(number)) {
            chosen.push(number);
        }
        show();
    }

    function start() {
        part("profile").append(...profiles.map((profile) => make("option", { value: profile.index }, profile.key)));
        part("profile").addEventListener("change", () => {
            open(part("profile").value);
            part("profile").value = "";
        });
        part("only-different").addEventListener("change", show);
        window.addEventListener("pageshow", show, { once: true }); // browsers tick it again when one comes back
        chosen = profiles.slice(0, 3).map((profile) => profile.index);
    }

    return { start, open };
})();

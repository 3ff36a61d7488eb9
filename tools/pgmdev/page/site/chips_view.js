// The list of all chips: searched while one types, filtered, sorted.

const CHIPS_AT_FIRST = 100;
const CHIPS_MORE = 1000; // many more at once would keep people waiting

const EVIDENCE_SHORT = {
    "datasheet maximum": "data sheet",
    "chip's own SFDP": "own SFDP",
    "two independent public sources": "two sources",
    "one public source": "one source",
    "family rule": "family rule",
};

/// "128 Mbit" as one word.
function without_blank(size) {
    return size.replace(/(\d) (?=([KMG]?bit|[KMG]iB|bytes)\b)/gi, "$1");
}

/// A size is a word of its own: "8mbit" is not in "128mbit".
function searched_word(word) {
    return /^\d+([kmg]?bit|[kmg]ib|bytes)$/.test(word) ? ` ${word} ` : word;
}

/// The sizes that people write: 2048 Mbit are 2 Gbit, too.
function size_texts(bits) {
    const gbit = bits / (1 << 30);
    const sizes = [size_text(bits), bytes_text(bits / 8), Number.isInteger(gbit) ? `${gbit} Gbit` : ""];
    return sizes.map(without_blank);
}

/// How a chip is found: all words of the question are in this text, or its digits are those of the identification.
function searched_text(row) {
    const names = FLASH.aliases_of(row).map((alias) => alias.name);
    const id = compared_text(row);
    const ids = [id, id.replace(/ /g, "")];
    const sizes = size_texts(row.device_bit_size);
    const words = [row.manufacturer_name, row.device_name, ...names, ...ids, ...sizes, row.asc_voltage];
    return ` ${words.join(" ")} `.toLowerCase();
}

const CHIPS_VIEW = (() => {
    const COLUMNS = [
        // heading, what is sorted by, what is shown, and whether narrow screens have it
        ["Maker", (row) => row.manufacturer_name.toLowerCase(), (row) => row.manufacturer_name, true],
        ["Chip", (row) => row.device_name.toLowerCase(), (row) => chip_cell(row), true],
        ["Answers", (row) => compared_text(row), (row) => make("code", {}, compared_text(row)), true],
        ["Size", (row) => row.device_bit_size, (row) => size_text(row.device_bit_size), true],
        ["Sector", (row) => row.device_sector_byte, (row) => bytes_text(row.device_sector_byte), false],
        ["Voltage", (row) => parseFloat(row.asc_voltage) || 0, (row) => row.asc_voltage, false],
        ["Chip erase", (row) => row.bulk_erase_time, (row) => seconds_text(row.bulk_erase_time), false],
        ["Identification by", (row) => evidence_short(row), (row) => evidence_short(row), false],
    ];
    const state = { words: [], digits: "", sorted: null, down: false, shown: CHIPS_AT_FIRST };
    let texts = null;

    function evidence_short(row) {
        const evidence = FLASH.evidence_of(row)?.identification;
        return evidence ? EVIDENCE_SHORT[evidence.evidence] : "";
    }

    /// The name; behind it the further name that was searched for, or the switch that the row waits for.
    function chip_cell(row) {
        const further =
            state.words.length === 0
                ? undefined
                : FLASH.aliases_of(row).find(({ name }) =>
                      state.words.some(
                          (word) => name.toLowerCase().includes(word) && !row.device_name.toLowerCase().includes(word),
                      ),
                  );
        return [
            chip_link(row),
            further ? make("span", { class: "further" }, ` also ${further.name}`) : null,
            row.enabled ? null : make("span", { class: "further" }, ` off: ${row.switch}`),
        ];
    }

    function searched(row) {
        texts ??= new Map(FLASH.rows.map((each) => [each, searched_text(each)]));
        return texts.get(row);
    }

    function passes(row) {
        const chosen = (id, value) => part(id).value === "" || part(id).value === String(value);
        return (
            (part("switched-off").checked || row.enabled) &&
            chosen("maker", row.manufacturer_name) &&
            chosen("size", row.device_bit_size) &&
            chosen("voltage", row.asc_voltage) &&
            (state.words.every((word) => searched(row).includes(word)) ||
                (state.digits !== "" && searched(row).includes(state.digits)))
        );
    }

    function chosen_rows() {
        const rows = FLASH.rows.filter(passes);
        if (state.sorted !== null) {
            const [, key] = COLUMNS[state.sorted];
            const keys = new Map(rows.map((row) => [row, key(row)]));
            const order = state.down ? -1 : 1;
            rows.sort((a, b) => {
                const [left, right] = [keys.get(a), keys.get(b)];
                return left < right ? -order : left > right ? order : 0;
            });
        }
        return rows;
    }

    function sort_by(column) {
        state.down = state.sorted === column && !state.down;
        state.sorted = column;
        show();
        part("chips-table").querySelectorAll("thead button")[column].focus();
    }

    function heading([text, , , always], column) {
        const is_sorted = state.sorted === column;
        return make(
            "th",
            {
                scope: "col",
                class: always ? "" : "wide",
                "aria-sort": is_sorted ? (state.down ? "descending" : "ascending") : "none",
            },
            make(
                "button",
                { type: "button", click: () => sort_by(column) },
                text,
                make("span", { "aria-hidden": "true", class: "arrow" }, is_sorted ? (state.down ? " ▼" : " ▲") : ""),
            ),
        );
    }

    function table_row(row) {
        return make(
            "tr",
            { class: row.enabled ? "" : "off" },
            COLUMNS.map(([, , cell, always], i) =>
                make(i === 1 ? "th" : "td", { scope: i === 1 ? "row" : false, class: always ? "" : "wide" }, cell(row)),
            ),
        );
    }

    /// Shows what the question and the filters choose.
    function show() {
        const rows = chosen_rows();
        const shown = rows.slice(0, state.shown);
        part("chips-count").textContent =
            rows.length > shown.length
                ? `${counted(rows.length, "row", "rows")}, the first ${shown.length} shown`
                : counted(rows.length, "row", "rows");
        part("chips-table").replaceChildren(
            make(
                "table",
                { class: "chips" },
                make("caption", { class: "unseen" }, "Serial flash chips"),
                make("thead", {}, make("tr", {}, COLUMNS.map(heading))),
                make("tbody", {}, shown.map(table_row)),
            ),
        );
        part("chips-more").hidden = rows.length <= shown.length;
        part("chips-none").hidden = rows.length > 0;
        const left_out = FLASH.why_left_out(part("search").value.trim());
        part("chips-left-out").textContent = left_out ?? "";
        part("chips-left-out").hidden = left_out === undefined;
    }

    function ask() {
        const question = part("search").value.trim().toLowerCase();
        state.words = without_blank(question)
            .split(/\s+/)
            .filter((word) => word !== "")
            .map(searched_word);
        const digits = question.replace(/[\s:,-]|0x/g, "");
        state.digits = /^([0-9a-f]{2}){2,}$/.test(digits) ? digits : "";
        state.shown = CHIPS_AT_FIRST;
        show();
    }

    /// Up and down go from row to row.
    function move(event) {
        const steps = { ArrowDown: 1, ArrowUp: -1 };
        if (steps[event.key] === undefined || event.target.tagName === "SELECT") {
            return;
        }
        const stops = [part("search"), ...part("chips-table").querySelectorAll("tbody a")];
        const next = stops[stops.indexOf(event.target) + steps[event.key]];
        if (stops.includes(event.target) && next) {
            event.preventDefault();
            next.focus();
        }
    }

    function add_choices(id, values, text = String) {
        part(id).append(...values.map((value) => make("option", { value }, text(value))));
    }

    function start() {
        const different = (name) => [...new Set(FLASH.rows.map((row) => row[name]))];
        add_choices(
            "maker",
            different("manufacturer_name").sort((a, b) => a.localeCompare(b)),
        );
        add_choices(
            "size",
            different("device_bit_size").sort((a, b) => a - b),
            size_text,
        );
        add_choices("voltage", different("asc_voltage").sort());
        part("search").addEventListener("input", ask);
        part("search").form.addEventListener("submit", (event) => event.preventDefault()); // there is nobody to send it to
        ["maker", "size", "voltage", "switched-off"].forEach((id) => part(id).addEventListener("change", ask));
        part("chips-more").addEventListener("click", () => {
            const first_new = state.shown;
            state.shown += CHIPS_MORE;
            show();
            part("chips-table").querySelectorAll("tbody a")[first_new]?.focus();
        });
        part("view-chips").addEventListener("keydown", move);
        window.addEventListener("pageshow", ask, { once: true }); // browsers fill in what was chosen when one comes back
        show();
    }

    return { start };
})();

// Making elements. Texts become text nodes: nothing in the data can be taken for markup.

const SVG_NAMESPACE = "http://www.w3.org/2000/svg";

function fill(node, attributes, children) {
    for (const [name, value] of Object.entries(attributes)) {
        if (typeof value === "function") {
            node.addEventListener(name, value);
        } else if (value !== false && value !== null && value !== undefined) {
            node.setAttribute(name, value === true ? "" : value);
        }
    }
    node.append(...children.flat().filter((child) => child !== null && child !== undefined && child !== ""));
    return node;
}

/// An element with attributes (functions listen to events), and with texts and elements in it.
function make(tag, attributes = {}, ...children) {
    return fill(document.createElement(tag), attributes, children);
}

function draw(tag, attributes = {}, ...children) {
    return fill(document.createElementNS(SVG_NAMESPACE, tag), attributes, children);
}

/// The element that the page has under an id.
function part(id) {
    return document.getElementById(id);
}

function heading_row(headings) {
    return make(
        "tr",
        {},
        headings.map((heading) => make("th", { scope: "col" }, heading)),
    );
}

/// A table that scrolls by itself where it is too wide. Rows are lists of cells; the first cell of a row heads it.
function data_table(caption, headings, rows, classes = "") {
    const body = rows.map((cells) =>
        make(
            "tr",
            {},
            cells.map((cell, i) => (i === 0 ? make("th", { scope: "row" }, cell) : make("td", {}, cell))),
        ),
    );
    return scrolling(
        caption,
        make(
            "table",
            { class: classes },
            make("caption", {}, caption),
            make("thead", {}, heading_row(headings)),
            make("tbody", {}, body),
        ),
    );
}

function scrolling(name, content) {
    return make("div", { class: "scrolling", tabindex: "0", role: "region", "aria-label": name }, content);
}

function facts(pairs) {
    return make(
        "dl",
        { class: "facts" },
        pairs
            .filter(([, value]) => value !== null && value !== "")
            .flatMap(([label, value]) => [make("dt", {}, label), make("dd", {}, value)]),
    );
}

const WITH_THOUSANDS = new Intl.NumberFormat("en");

function counted(count, one, many) {
    return `${WITH_THOUSANDS.format(count)} ${count === 1 ? one : many}`;
}

/// A size in the largest of Mbit, Kbit and bit that leaves no fraction, as the command writes it.
function size_text(size) {
    if (size !== 0 && size % (1 << 20) === 0) {
        return `${size / (1 << 20)} Mbit`;
    }
    return size !== 0 && size % 1024 === 0 ? `${size / 1024} Kbit` : `${size} bit`;
}

function bytes_text(bytes) {
    const units = [
        [1 << 30, "GiB"],
        [1 << 20, "MiB"],
        [1024, "KiB"],
    ];
    const [unit, name] = units.find(([each]) => bytes !== 0 && bytes % each === 0) ?? [1, "bytes"];
    return `${bytes / unit} ${name}`;
}

/// The page of a record.
function chip_address(row) {
    return row.enabled && FLASH.record_named(row.device_name) === row
        ? `#/chip/${encodeURIComponent(row.device_name)}`
        : `#/row/${FLASH.place_of(row)}`;
}

function chip_link(row) {
    return make("a", { href: chip_address(row) }, row.device_name);
}

/// What a record compares, byte by byte, "··" where it does not look: "EF 40 17".
function compared_text(record) {
    const comparisons = comparisons_of(record);
    const last = Math.max(...comparisons.map(({ position }) => position));
    const bytes = Array.from({ length: last + 1 }, () => "··");
    comparisons.forEach(({ position, value }) => {
        bytes[position] = hex_byte(value);
    });
    return `${record.silicon_id ? "signature " : ""}${bytes.join(" ")}`;
}

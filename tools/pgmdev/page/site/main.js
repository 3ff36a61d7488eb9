// Which view is shown: the one that the address names behind "#/".

function pictures_view() {
    const figure = (drawing, text) => make("figure", {}, drawing, make("figcaption", {}, text));
    return [
        make("h3", {}, "Capacity by maker"),
        figure(capacity_picture(FLASH.records), "Chips of the table; capacities in Mbit."),
        make("h3", {}, "Erase times"),
        figure(
            erase_picture(FLASH.records),
            "The longest erase of the whole chip, as the tool waits for it; larger dots are more chips.",
        ),
    ];
}

/// `left_out`: a sentence on why there is no row for it, where that is known.
function no_chip_page(left_out) {
    return [
        make("h2", { tabindex: "-1" }, left_out ? "Left out of the table" : "No such chip"),
        left_out ? make("p", { class: "left-out" }, left_out) : null,
        make("p", {}, make("a", { href: "#/chips" }, "All chips")),
    ];
}

function chip_view(nodes) {
    part("view-chip").replaceChildren(...nodes.filter(Boolean));
}

function row_view(row) {
    chip_view(row ? chip_page(row) : no_chip_page());
}

/// The place in a list that an address names; -1: it names none.
function place_in(text = "") {
    return /^[0-9]+$/.test(text) ? Number(text) : -1;
}

/// The chip of a name, or of a further one.
function named_chip_view(name) {
    const alias = FLASH.record_named(name) ? undefined : FLASH.alias_named(name);
    const row = FLASH.record_named(alias ? alias.device_name : name);
    chip_view(row ? chip_page(row, alias) : no_chip_page(FLASH.why_left_out(name)));
}

/// Views that show the same whatever the address says further are filled when they are first seen.
const once = (id, content) => {
    let filled = false;
    return () => {
        if (!filled) {
            part(id).append(...content());
            filled = true;
        }
    };
};

const VIEWS = {
    // by the first word of the address: the view, its link, and how it is filled
    chips: ["view-chips", "chips", () => {}],
    chip: ["view-chip", "chips", (name) => named_chip_view(trim_white(name ?? ""))],
    row: ["view-chip", "chips", (place) => row_view(FLASH.rows[place_in(place)])],
    identify: ["view-identify", "identify", IDENTIFY_VIEW.open],
    boot: ["view-boot", "boot", once("view-boot", boot_flash_view)],
    profiles: ["view-profiles", "profiles", PROFILES_VIEW.open],
    names: ["view-names", "names", NAMES_VIEW.open],
    pictures: ["view-pictures", "pictures", once("view-pictures", pictures_view)],
};

function address_words(address) {
    return address
        .replace(/^#\/?/, "")
        .split("/")
        .map((word) => {
            try {
                return decodeURIComponent(word);
            } catch {
                return word;
            }
        });
}

function show_view(focus, address = location.hash) {
    const [word, argument] = address_words(address);
    const [id, link, fill_view] = Object.hasOwn(VIEWS, word) ? VIEWS[word] : VIEWS.chips;
    document.querySelectorAll("main > section").forEach((section) => {
        section.hidden = section.id !== id;
    });
    document.querySelectorAll("nav a").forEach((each) => {
        if (each.getAttribute("href") === `#/${link}`) {
            each.setAttribute("aria-current", "page");
        } else {
            each.removeAttribute("aria-current");
        }
    });
    fill_view(argument);
    const heading = part(id).querySelector("h2");
    document.title = `${heading.textContent} – Tessary device data`;
    if (focus) {
        heading.focus({ preventScroll: true });
        window.scrollTo(0, 0);
    }
}

function press(event) {
    const is_typing = ["INPUT", "TEXTAREA", "SELECT"].includes(event.target.tagName);
    if (event.key === "/" && !is_typing && !event.ctrlKey && !event.metaKey && !event.altKey) {
        event.preventDefault();
        const search = () => part("search").focus();
        if (part("view-chips").hidden) {
            window.addEventListener("hashchange", search, { once: true });
            location.hash = "#/chips";
        } else {
            search();
        }
    }
}

/// A link to the address that is there already brings its view again: the address stays, and so tells nobody.
function follow(event) {
    const hash = event.target.closest("a")?.hash;
    if (hash && hash === location.hash && !event.ctrlKey && !event.metaKey && !event.shiftKey) {
        show_view(true);
    }
}

/// The address is that of the view: it does not become one of a place within it.
function skip_to_content(event) {
    event.preventDefault();
    part("main").focus();
}

part("made-from").textContent =
    `${counted(FLASH.records.length, "record", "records")} of serial flash, ` +
    `written by pgmdev ${TABLES.version.command}, catalog ${TABLES.version.catalog}.`;
CHIPS_VIEW.start();
IDENTIFY_VIEW.start();
PROFILES_VIEW.start();
NAMES_VIEW.start();
window.addEventListener("hashchange", () => show_view(true));
document.addEventListener("keydown", press);
document.addEventListener("click", follow);
document.querySelector(".skip").addEventListener("click", skip_to_content);
show_view(false);
performance.mark("ready");

/// For scripts that ask the page, such as its tests.
window.tessary = {
    identify: (text, in_a_chain = false) => identification(0, parse_question(text), in_a_chain),
    identify_with_sfdp: (text, dump) =>
        identification_with_sfdp(parse_question(text), read_sfdp(bytes_of_dump(dump))),
    sfdp: (dump) => {
        const sfdp = read_sfdp(bytes_of_dump(dump));
        return sfdp.refusal
            ? { refusal: describe_refusal(sfdp.refusal) }
            : { ...sfdp_json(sfdp), record: derived_record(sfdp, []) };
    },
    spell: NAMES.spell,
    records: () => FLASH.rows,
    /// What a link to that address leads to, without an entry in the history.
    show: (address) => show_view(true, address),
};

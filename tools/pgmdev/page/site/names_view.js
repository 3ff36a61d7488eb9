// The naming schemes of the catalog: a name in all its spellings.

const NAME_EXAMPLES = ["KES50C6", "KES75F169", "KES_100", "KESTREL"];

const SPELLING_LABELS = [
    ["name", "name"],
    ["package_name", "package name"],
    ["pgm_name", "programming name"],
    ["pgm_part_pcf", "programmer-file part"],
    ["pgm_family_pcf", "programmer-file family"],
    ["dev_part_pcf", "programmer-file part of the device"],
    ["dev_family_pcf", "programmer-file family of the device"],
    ["pcf_family_pcf", "programmer-file family of the family"],
    ["family", "family"],
    ["pcf_device", "device of the programmer-file part"],
    ["possible_full_name", "first full name"],
    ["device", "device"],
];
const PART_LABELS = [
    ["number", "part number"],
    ["opn_index", "ordering-code index"],
    ["orderable", "orderable"],
    ["production", "in production"],
    ["hidden", "hidden"],
    ["package", "package"],
    ["pins", "pins"],
    ["speed", "speed grade"],
    ["temperature", "temperature range"],
];
const PARTS_SHOWN = 60;

const name_link = (name) => make("a", { href: `#/names/${encodeURIComponent(name)}` }, name);

function known_name_part(answer) {
    const spelling = (key) =>
        answer[key] === "" ? null : answer[key] === answer.name ? answer.name : name_link(answer[key]);
    const characteristic = (value) =>
        typeof value === "boolean" ? (value ? "yes" : "no") : value === null ? null : String(value);
    const profile = answer.profile && make("a", { href: `#/profiles/${answer.profile.index}` }, answer.profile.key);
    const more = answer.parts.length - PARTS_SHOWN;
    return [
        make(
            "p",
            { class: "verdict good" },
            `${answer.name}: ${answer.schemes.map((scheme) => scheme.replace(/_/g, " ")).join(", ")}`,
        ),
        facts([
            ...SPELLING_LABELS.map(([key, text]) => [text, spelling(key)]),
            ...PART_LABELS.map(([key, text]) => [text, characteristic(answer[key])]),
            ["profile", profile],
        ]),
        make("h3", {}, `Stands for ${counted(answer.parts.length, "part", "parts")}`),
        make(
            "p",
            { class: "parts" },
            ...answer.parts.slice(0, PARTS_SHOWN).flatMap((name, i) => [i === 0 ? "" : " ", name_link(name)]),
            more > 0 ? ` and ${more} more` : "",
        ),
    ];
}

function name_answer(question) {
    if (trim_white(question) === "") {
        return [];
    }
    const answer = NAMES.spell(question);
    if (answer) {
        return known_name_part(answer);
    }
    const similar = NAMES.similar(question, 12);
    return [
        make(
            "p",
            { class: "verdict bad" },
            `No part, and nothing that parts belong to, is named "${trim_white(question)}".`,
        ),
        similar.length > 0
            ? make(
                  "p",
                  {},
                  "Names that begin alike: ",
                  ...similar.flatMap((name, i) => [i === 0 ? "" : ", ", name_link(name)]),
              )
            : null,
    ].filter(Boolean);
}

const NAMES_VIEW = (() => {
    function show() {
        part("name-answer").replaceChildren(...name_answer(part("name").value));
    }

    function start() {
        part("name").addEventListener("input", show);
        part("name-examples").append(
            "Try ",
            ...NAME_EXAMPLES.flatMap((name, i) => [i === 0 ? "" : ", ", name_link(name)]),
            ".",
        );
    }

    function open(name) {
        if (name !== undefined) {
            part("name").value = name;
        }
        show();
    }

    return { start, open };
})();

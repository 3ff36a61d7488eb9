// The identification box: bytes of a response, and a dump of SFDP if there is one.

const IDENTIFY_EXAMPLES = ["EF 40 18", "20 BB 21", "01 20 18 4D 01 80", "C2 20 19", "FF FF FF", "20 17 EF"];

const full_link = (row) => make("span", {}, `${row.manufacturer_name} `, chip_link(row));

const named_link = (name) => chip_link(FLASH.record_named(name));
const joined = (parts) => parts.flatMap((each, i) => (i === 0 ? [each] : [" or ", each]));

/// A mood, and one sentence on what the answer is.
function verdict(answer) {
    const taken = answer.mapped ? FLASH.records[answer.index] : null;
    if (!taken) {
        return [
            "bad",
            answer.nearest.length > 0
                ? "Not mapped: no record takes these bytes. Near to them:"
                : "Not mapped: no record takes these bytes.",
        ];
    }
    if (answer.contradictions.length > 0) {
        return ["bad", "Taken as ", full_link(taken), ", but the bytes are not that chip's."];
    }
    return answer.sure
        ? ["good", full_link(taken), ", and no other chip that is known."]
        : ["unsure", full_link(taken), " is taken, but others are possible."];
}

function missing_text(positions) {
    return positions.length === 0
        ? null
        : make(
              "p",
              {},
              `Read ${positions[positions.length - 1] + 1} bytes: byte ${positions.join(", ")} would tell more.`,
          );
}

/// A chip without a row of its own may still share one.
function chip_of_ambiguity({ device_name, in_table }) {
    if (in_table) {
        return chip_link(FLASH.record_named(device_name));
    }
    return FLASH.alias_named(device_name)
        ? make("a", { href: `#/chip/${encodeURIComponent(device_name)}` }, device_name)
        : `${device_name} (not in the table)`;
}

function ambiguity_item({ chips, told_apart_by, risk, harm }) {
    const names = chips.flatMap((chip, i) => [i === 0 ? "" : ", ", chip_of_ambiguity(chip)]);
    return make(
        "li",
        {},
        make("span", { class: `risk ${risk}` }, risk),
        " ",
        ...names,
        `: ${told_apart_by}. `,
        make("span", { class: "harm" }, harm),
    );
}

function answer_part(answer) {
    const [mood, ...text] = verdict(answer);
    const taken = answer.mapped ? FLASH.records[answer.index] : null;
    return [
        make("p", { class: `verdict ${mood}` }, ...text),
        answer.oddity ? make("p", { class: "oddity" }, `Odd: ${answer.oddity.text}.`) : null,
        answer.nearest.length > 0
            ? make(
                  "ul",
                  {},
                  answer.nearest.map(({ index }) =>
                      make(
                          "li",
                          {},
                          chip_link(FLASH.records[index]),
                          " ",
                          make("code", {}, compared_text(FLASH.records[index])),
                      ),
                  ),
              )
            : null,
        ...answer.contradictions.map(({ position, found, expected }) =>
            make("p", { class: "oddity" }, `Byte ${position} is ${found}, expected ${expected}.`),
        ),
        answer.fitting.length > 0
            ? make("p", {}, "They are those of ", ...joined(answer.fitting.map((name) => named_link(name))), ".")
            : null,
        taken ? summary_facts(taken) : null,
        missing_text(answer.missing_bytes),
        answer.ambiguities.length > 0 ? make("h3", {}, "Known to be ambiguous") : null,
        answer.ambiguities.length > 0 ? make("ul", {}, answer.ambiguities.map(ambiguity_item)) : null,
        ...candidates_part(answer.candidates),
    ].filter(Boolean);
}

/// The answer as the command gives it to programs.
function json_part(answer) {
    return make(
        "details",
        {},
        make("summary", {}, "As JSON"),
        make("pre", { tabindex: "0" }, JSON.stringify(answer, null, 2)),
    );
}

function wrong_input(text) {
    return [make("p", { class: "verdict bad" }, text)];
}

/// What is answered to the texts of both boxes.
function identify_answer(response, dump) {
    let sfdp = null;
    if (trim_white(dump) !== "") {
        const bytes = bytes_of_dump(dump);
        if (bytes === null) {
            return wrong_input("The dump is no text of hexadecimal digits, or lines are missing in it.");
        }
        sfdp = read_sfdp(bytes);
        if (sfdp.refusal) {
            return wrong_input(`The SFDP dump is refused: ${describe_refusal(sfdp.refusal)}.`);
        }
    }
    if (trim_white(response) === "") {
        return sfdp
            ? [
                  ...sfdp_part(sfdp, derived_record(sfdp, [])),
                  json_part({ ...sfdp_json(sfdp), record: derived_record(sfdp, []) }),
              ]
            : [];
    }
    try {
        const question = parse_question(response);
        const answer = sfdp ? identification_with_sfdp(question, sfdp) : identification(0, question, true);
        return [...answer_part(answer), ...(sfdp ? known_sfdp_part(sfdp, answer) : []), json_part(answer)];
    } catch (error) {
        return wrong_input(error.message);
    }
}

const IDENTIFY_VIEW = (() => {
    function show() {
        part("identify-answer").replaceChildren(...identify_answer(part("response").value, part("dump").value));
    }

    function start() {
        part("response").addEventListener("input", show);
        part("dump").addEventListener("input", show);
        part("identify-examples").append(
            "Try ",
            ...IDENTIFY_EXAMPLES.flatMap((example, i) => [
                i === 0 ? "" : ", ",
                make("a", { href: `#/identify/${encodeURIComponent(example)}` }, example),
            ]),
            ".",
        );
    }

    /// Fills in a response that an address has brought.
    function open(response) {
        if (response !== undefined) {
            part("response").value = response;
        }
        show();
    }

    return { start, open };
})();

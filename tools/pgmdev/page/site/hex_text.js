// Bytes from text that people paste: pairs of digits, and the hex dumps of many tools.

const LARGEST_DUMP = 4 << 20;
const WHITE = " \t\r\n\v\f";

function trim_white(text) {
    let begin = 0;
    let end = text.length;
    while (begin < end && WHITE.includes(text[begin])) {
        ++begin;
    }
    while (end > begin && WHITE.includes(text[end - 1])) {
        --end;
    }
    return text.slice(begin, end);
}

/// Null: something else than pairs of digits, each perhaps behind "0x", and what may stand between them.
function bytes_of_hex_pairs(text, between) {
    const bytes = [];
    for (let at = 0; at < text.length;) {
        if (between.includes(text[at])) {
            ++at;
            continue;
        }
        if (/^0[xX]/.test(text.slice(at, at + 2))) {
            at += 2;
        }
        const pair = text.slice(at, at + 2);
        if (!/^[0-9A-Fa-f]{2}$/.test(pair)) {
            return null;
        }
        bytes.push(parseInt(pair, 16));
        at += 2;
    }
    return bytes;
}

function append(bytes, more) {
    for (const byte of more) {
        bytes.push(byte);
    }
}

/// A line of a dump: its offset, "" for none, and its pairs. `has_offsets`: lines before have some, so that a number
/// alone is the last one.
function dump_line(line, has_offsets) {
    const number = /^[0-9A-Fa-f]*/.exec(line)[0];
    const rest = line.slice(number.length);
    if (number.length >= 4 && rest.startsWith(":")) {
        const pairs = rest.slice(1).replace(/^[ \t]+/, "");
        const characters = pairs.indexOf("  "); // behind two blanks stand characters
        return { offset: number, pairs: characters < 0 ? pairs : pairs.slice(0, characters) };
    }
    const pairs = rest.replace(/^[ \t]+/, "");
    const pairs_follow = pairs.length === 2 || (pairs.length > 2 && !/[0-9A-Fa-f]/.test(pairs[2]));
    if (number.length >= 6 && (pairs_follow || (rest === "" && has_offsets))) {
        return { offset: number, pairs: pairs.split("|")[0] };
    }
    return { offset: "", pairs: line };
}

/// The bytes of a line as `hexdump` prints it without options: numbers of two bytes, the lowest first, behind an offset of
/// seven digits. Null: it is no such line.
function bytes_of_dump_words(line) {
    const words = /^[0-9A-Fa-f]{7}((?:[ \t]+[0-9A-Fa-f]{4}(?=[ \t]|$))+)(.*)$/s.exec(line);
    return words === null || (words[2] !== "" && !words[2].startsWith("  "))
        ? null
        : words[1].match(/[0-9A-Fa-f]{4}/g).flatMap((word) => [
              parseInt(word.slice(2), 16),
              parseInt(word.slice(0, 2), 16),
          ]);
}

/// Null: the text is no dump.
function bytes_of_hex_text(text) {
    const bytes = [];
    let last = [];
    let start = 0;
    let is_first = true;
    let has_offsets = false;
    let repeats = false;
    let has_words = false; // the line before
    for (const raw of text.split("\n")) {
        const line = trim_white(raw);
        if (line === "" || bytes.length > LARGEST_DUMP) {
            continue;
        }
        if (line === "*") {
            repeats = true;
            continue;
        }
        const words = bytes_of_dump_words(line);
        const { offset, pairs } = words === null ? dump_line(line, has_offsets) : { offset: line.slice(0, 7), pairs: "" };
        if (is_first && offset !== "") {
            start = parseInt(offset, 16);
        }
        is_first = false;
        has_offsets = has_offsets || offset !== "";
        if (repeats) {
            const end = offset === "" ? NaN : parseInt(offset, 16) - start;
            if (!(end >= 0 && end <= LARGEST_DUMP) || last.length === 0) {
                return null;
            }
            while (bytes.length < end) {
                append(bytes, last);
            }
            if (bytes.length !== end) {
                return null;
            }
        }
        repeats = false;
        if (has_words) {
            const end = offset === "" ? NaN : parseInt(offset, 16) - start;
            if (end + 1 === bytes.length && bytes[end] === 0) {
                bytes.pop(); // it completes the last number where the bytes are odd
            }
            if (bytes.length !== end) {
                return null;
            }
        }
        has_words = words !== null;
        const found = words ?? bytes_of_hex_pairs(pairs, " \t,:-");
        if (found === null) {
            return null;
        }
        last = found;
        append(bytes, found);
    }
    return repeats || bytes.length > LARGEST_DUMP || bytes.length === 0 ? null : bytes;
}

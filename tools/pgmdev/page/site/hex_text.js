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

/// How dumps print numbers: their bytes, whether the lowest is the first, and whether offsets stand before them.
const word_form = (size, lowest_first, has_offsets) => ({ size, lowest_first, has_offsets });
const HEXDUMP_FORM = word_form(2, true, true);

/// In which a first line may begin with the signature.
const WORD_FORMS = [4, 2, 8].flatMap((size) => [
    word_form(size, true, true),
    word_form(size, false, true),
    word_form(size, true, false),
    word_form(size, false, false),
]);

/// The bytes of numbers, behind which characters may stand. Null: it is no such text.
function bytes_of_words(text, { size, lowest_first }) {
    const bytes = [];
    const next = new RegExp(`[ \\t]*([0-9A-Fa-f]{${2 * size}})(?![^ \\t])`, "y");
    let end = 0;
    for (let found; (found = next.exec(text)) !== null; end = next.lastIndex) {
        const word = found[1].match(/../g).map((pair) => parseInt(pair, 16));
        append(bytes, lowest_first ? word.reverse() : word);
    }
    const rest = text.slice(end);
    return rest === "" || (end > 0 && rest.startsWith("  ")) ? bytes : null;
}

/// The offset of a line of a dump, "" for none, and its pairs. `has_offsets`: lines before have some, so that a number
/// alone is the last one.
function taken_apart(line, has_offsets) {
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

/// A line of a dump: its offset, "" for none, its bytes, and how many zeros may complete its last number; where any may,
/// offsets must be right. Null: it is no such line.
function dump_line(offset, bytes, most_padding) {
    return bytes === null ? null : { offset, bytes, most_padding };
}

/// Of pairs, or of numbers as `hexdump` prints them without options, and `od -x`: behind an offset of seven digits.
function line_of_pairs(line, has_offsets) {
    const words = /^[0-9A-Fa-f]{7}[ \t]/.test(line) ? bytes_of_words(line.slice(7), HEXDUMP_FORM) : null;
    if (words !== null) {
        return dump_line(line.slice(0, 7), words, HEXDUMP_FORM.size - 1);
    }
    const { offset, pairs } = taken_apart(line, has_offsets);
    return dump_line(offset, bytes_of_hex_pairs(pairs, " \t,:-"), 0);
}

function line_of_words(line, form) {
    if (!form.has_offsets) {
        return dump_line("", bytes_of_words(line, form), 0);
    }
    const [, offset, words] = /^([0-9A-Fa-f]*):?(.*)$/s.exec(line);
    return offset === "" ? null : dump_line(offset, bytes_of_words(words, form), form.size - 1); // none of the last offset
}

const begins_as_sfdp = (bytes) => String.fromCharCode(...(bytes ?? []).slice(0, 4)) === "SFDP";

/// The number that an offset is, of up to 64 bits; null when it is none of that base.
function offset_number(offset, base) {
    const digits = { 16: /^[0-9A-Fa-f]{1,16}$/, 10: /^[0-9]{1,16}$/, 8: /^[0-7]{1,16}$/ }[base];
    const prefix = { 16: "0x", 10: "", 8: "0o" }[base];
    return digits.test(offset) ? BigInt(prefix + offset) : null;
}

const BASES = [16, 8, 10]; // of offsets: `xxd`, `od`, `od -A d`

/// The bytes of a dump, put together of its lines.
class DumpBytes {
    bytes = [];
    repeats = false;
    #form; // of numbers in all lines, where the first one has told it
    #last = [];
    #first_offset = "";
    #last_offset = "";
    #bases = BASES; // those of the offsets, as far as can be told
    #counts = false; // an offset has told what it counts
    #is_first = true;
    #has_offsets = false;
    #most_padding = 0; // of the line before

    /// False: it is no line of the dump.
    take(line) {
        if (line === "*") {
            this.repeats = true;
            return true;
        }
        const found = this.#read(line);
        if (
            found === null ||
            !(this.#is_first ? this.#begin_with(found) : this.#continue_at(found.offset, found.bytes.length === 0))
        ) {
            return false;
        }
        this.#is_first = false;
        this.#has_offsets = this.#has_offsets || found.offset !== "";
        this.repeats = false;
        this.#most_padding = found.most_padding;
        this.#last = found.bytes;
        this.#last_offset = found.offset;
        append(this.bytes, this.#last);
        return this.bytes.length <= LARGEST_DUMP;
    }

    /// The line, of pairs unless the first one begins as SFDP only when it is read as numbers: then all are.
    #read(line) {
        if (this.#form) {
            return line_of_words(line, this.#form);
        }
        const pairs = line_of_pairs(line, this.#has_offsets);
        if (!this.#is_first || begins_as_sfdp(pairs?.bytes)) {
            return pairs;
        }
        this.#form = WORD_FORMS.find((form) => begins_as_sfdp(line_of_words(line, form)?.bytes));
        return this.#form ? line_of_words(line, this.#form) : pairs;
    }

    /// Begins with that line. False: one before it says that it is repeated.
    #begin_with(line) {
        this.#first_offset = line.offset;
        return !this.repeats;
    }

    /// How many bytes stand before the offset; NaN when it is no such number.
    #bytes_before(offset, base) {
        const start = offset_number(this.#first_offset, base) ?? 0n;
        const end = offset_number(offset, base);
        return end === null || end < start ? NaN : Number(end - start);
    }

    /// Whether more bytes should stand before the offset than do: of all the lines before, or because it counts the bytes of
    /// the last one.
    #leaves_a_gap(offset, is_end) {
        const { length } = this.#last;
        const follows_last = (base) => {
            const start = offset_number(this.#last_offset, base);
            return length > 0 && start !== null && start + BigInt(length) === offset_number(offset, base);
        };
        return (
            (this.#counts && !is_end && this.#bytes_before(offset, this.#bases[0]) > this.bytes.length) ||
            BASES.some((base) => follows_last(base) && this.#bytes_before(offset, base) > this.bytes.length)
        );
    }

    /// Whether a line may follow behind that many bytes.
    #may_end_at(end) {
        const { length } = this.bytes;
        if (this.repeats) {
            return this.#last.length > 0 && end >= length && end <= LARGEST_DUMP &&
                (end - length) % this.#last.length === 0;
        }
        // Zeros complete the last number; the offset behind it tells how many.
        return end <= length && length - end <= this.#most_padding &&
            this.bytes.slice(end).every((byte) => byte === 0);
    }

    /// Goes on with the line of this offset, in the bases in which all of them have led to where they stand. False: bytes
    /// are missing before it, or it does not tell how often a line is repeated.
    #continue_at(offset, is_end) {
        const bases = this.#bases.filter((base) => this.#may_end_at(this.#bytes_before(offset, base)));
        if (bases.length === 0) {
            return !this.repeats && this.#most_padding === 0 && !this.#leaves_a_gap(offset, is_end);
        }
        this.#bases = bases;
        this.#counts = true;
        const end = this.#bytes_before(offset, bases[0]);
        while (this.bytes.length < end) {
            append(this.bytes, this.#last);
        }
        this.bytes.length = end;
        return true;
    }
}

/// Null: the text is no dump.
function bytes_of_hex_text(text) {
    const dump = new DumpBytes();
    for (const raw of text.split("\n")) {
        const line = trim_white(raw);
        if (line !== "" && !dump.take(line)) {
            return null;
        }
    }
    return dump.repeats || dump.bytes.length === 0 ? null : dump.bytes;
}

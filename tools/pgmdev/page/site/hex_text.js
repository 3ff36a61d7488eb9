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

/// The bytes of a line as `hexdump` prints it without options, and `od -x`: numbers of two bytes, the lowest first, behind an
/// offset of seven digits. Null: it is no such line.
function bytes_of_dump_words(line) {
    const words = /^[0-9A-Fa-f]{7}((?:[ \t]+[0-9A-Fa-f]{4}(?=[ \t]|$))+)(.*)$/s.exec(line);
    return words === null || (words[2] !== "" && !words[2].startsWith("  "))
        ? null
        : words[1].match(/[0-9A-Fa-f]{4}/g).flatMap((word) => [
              parseInt(word.slice(2), 16),
              parseInt(word.slice(0, 2), 16),
          ]);
}

/// The number that an offset is; NaN when it is none of that base.
function offset_number(offset, base) {
    const digits = { 16: /^[0-9A-Fa-f]{1,16}$/, 10: /^[0-9]{1,16}$/, 8: /^[0-7]{1,16}$/ }[base];
    return digits.test(offset) ? parseInt(offset, base) : NaN;
}

/// The bytes of a dump, put together of its lines.
class DumpBytes {
    bytes = [];
    repeats = false;
    #last = [];
    #first_offset = "";
    #bases = [16, 8, 10]; // those of the offsets, as far as can be told: of `xxd`, of `od`, of `od -A d`
    #counts = false; // an offset has told what it counts
    #is_first = true;
    #has_offsets = false;
    #has_words = false; // the line before

    /// False: it is no line of the dump.
    take(line) {
        if (line === "*") {
            this.repeats = true;
            return true;
        }
        const words = bytes_of_dump_words(line);
        const { offset, pairs } =
            words === null ? dump_line(line, this.#has_offsets) : { offset: line.slice(0, 7), pairs: "" };
        const found = words ?? bytes_of_hex_pairs(pairs, " \t,:-");
        if (
            found === null ||
            (this.#is_first ? this.repeats : !this.#continue_at(offset, found.length === 0))
        ) {
            return false;
        }
        if (this.#is_first) {
            this.#first_offset = offset;
        }
        this.#is_first = false;
        this.#has_offsets = this.#has_offsets || offset !== "";
        this.repeats = false;
        this.#has_words = words !== null;
        this.#last = found;
        append(this.bytes, found);
        return this.bytes.length <= LARGEST_DUMP;
    }

    /// How many bytes stand before the offset; NaN when it is no such number.
    #bytes_before(offset, base) {
        const start = offset_number(this.#first_offset, base) || 0;
        const end = offset_number(offset, base);
        return end < start ? NaN : end - start;
    }

    /// Whether a line may follow behind that many bytes.
    #may_end_at(end) {
        const { length } = this.bytes;
        if (this.repeats) {
            return this.#last.length > 0 && end >= length && end <= LARGEST_DUMP &&
                (end - length) % this.#last.length === 0;
        }
        // The last number of two bytes has a zero more where the bytes are odd; the offset behind it tells.
        return end === length || (this.#has_words && end + 1 === length && this.bytes[end] === 0);
    }

    /// Goes on with the line of this offset, in the bases in which all of them have led to where they stand. False: bytes
    /// are missing before it, or it does not tell how often a line is repeated.
    #continue_at(offset, is_end) {
        const bases = this.#bases.filter((base) => this.#may_end_at(this.#bytes_before(offset, base)));
        if (bases.length === 0) {
            const leaves_a_gap =
                this.#counts && !is_end && this.#bytes_before(offset, this.#bases[0]) > this.bytes.length;
            return !this.repeats && !this.#has_words && !leaves_a_gap;
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

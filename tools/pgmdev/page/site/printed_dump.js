// Dumps as debuggers print them, and as sources of programs have them.

const without_prefix = (number) => number.replace(/^0[xX]/, "");

/// Numbers behind "0x", set apart by one blank each, at least two digits of each; other text as it is.
function plain_numbers(text) {
    if (!/0[xX]/.test(text)) {
        return text;
    }
    const numbers = text.split(/[ \t\r,]+/).filter((number) => number !== "");
    return numbers.map((number) => " " + without_prefix(number).replace(/^.$/s, "0$&")).join("");
}

/// The address that a debugger prints before ':' or '=', perhaps with the symbol that is there; "" when it is none.
function address_of(text) {
    const [, number, symbol] = /^([^ \t]*)(.*)$/s.exec(text);
    const digits = without_prefix(number);
    return /^[0-9A-Fa-f]+$/.test(digits) && /^(<.*>)?$/s.test(trim_white(symbol)) ? digits.padStart(8, "0") : "";
}

/// Where the ':' or '=' behind an address is, and behind its symbol, whose name may have colons; -1: there is none.
function place_of_sign(text) {
    const first = text.search(/[:=]/);
    const symbol = text.indexOf("<");
    if (symbol < 0 || symbol > first) {
        return first;
    }
    const end = text.lastIndexOf(">");
    const behind = end < 0 ? -1 : text.slice(end).search(/[:=]/);
    return behind < 0 ? -1 : end + behind;
}

function plain_line(line) {
    const text = trim_white(line.split("//")[0].replace(/\/\*.*?(\*\/|$)/gs, ""));
    const sign = place_of_sign(text);
    if (sign < 0) {
        return plain_numbers(text);
    }
    const address = address_of(text.slice(0, sign));
    return address === "" ? text : address + ":" + plain_numbers(text.slice(sign + 1));
}

/// The same bytes as a dump that bytes_of_hex_text() reads, if a debugger has printed them ("0x20000000: 53 46", "0x20000000
/// <area>:	0x53	0x46", "20000000 = 53 46"), or if they are an array of C, or have single digits behind "0x".
function plain_dump_of(text) {
    const begin = text.indexOf("{");
    const inside = begin < 0 ? text : text.slice(begin + 1).split("}")[0];
    return inside.split("\n").map(plain_line).join("\n");
}

/// The bytes of a dump, also of one that only the signature tells to be read like this. Null: the text is no dump.
function bytes_of_dump(text) {
    const bytes = bytes_of_hex_text(text);
    if (!begins_as_sfdp(bytes)) {
        const printed = bytes_of_hex_text(plain_dump_of(text));
        if (begins_as_sfdp(printed)) {
            return printed;
        }
    }
    return bytes;
}

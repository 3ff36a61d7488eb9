#include "flash/printed_dump.h"

#include <algorithm>

#include "gen.h"
#include "hex_pairs.h"
#include "text_lines.h"

namespace {

constexpr std::string_view BETWEEN_NUMBERS = " \t\r,";
constexpr std::size_t DIGITS_OF_OFFSET = 8;  // at least: fewer may be bytes

std::string_view without_prefix(std::string_view number) {
    const bool has_it = number.starts_with("0x") || number.starts_with("0X");
    return has_it ? number.substr(2) : number;
}

/// What is in the first braces; all of it where there are none.
std::string_view in_braces(std::string_view text) {
    const std::size_t begin = text.find('{');
    if (begin == std::string_view::npos) {
        return text;
    }
    const std::string_view inside = text.substr(begin + 1);
    return inside.substr(0, inside.find('}'));
}

std::string without_comments(std::string_view line) {
    std::string kept;
    for (line = line.substr(0, line.find("//")); !line.empty();) {
        const std::size_t begin = std::min(line.find("/*"), line.size());
        kept.append(line.substr(0, begin));
        const std::size_t end = line.find("*/", begin + 2);
        line.remove_prefix(end == std::string_view::npos ? line.size() : end + 2);
    }
    return kept;
}

/// Numbers behind "0x", set apart by one blank each, at least two digits of each; other text as it is.
std::string plain_numbers(std::string_view text) {
    if (text.find("0x") == std::string_view::npos && text.find("0X") == std::string_view::npos) {
        return std::string(text);
    }
    std::string plain;
    for (std::size_t begin = 0; (begin = text.find_first_not_of(BETWEEN_NUMBERS, begin)) != std::string_view::npos;) {
        const std::size_t end = std::min(text.find_first_of(BETWEEN_NUMBERS, begin), text.size());
        const std::string_view digits = without_prefix(text.substr(begin, end - begin));
        plain.append(digits.size() == 1 ? " 0" : " ").append(digits);
        begin = end;
    }
    return plain;
}

/// The address that a debugger prints before ':' or '=', perhaps with the symbol that is there; "" when it is none.
std::string address_of(std::string_view text) {
    const std::size_t end = std::min(text.find_first_of(" \t"), text.size());
    const std::string_view number = without_prefix(text.substr(0, end));
    const std::string symbol = gen_remove_leading_and_trailing_white_spaces(std::string(text.substr(end)));
    if (number.empty() || number.find_first_not_of(HEX_DIGITS) != std::string_view::npos ||
        (!symbol.empty() && !(symbol.starts_with('<') && symbol.ends_with('>')))) {
        return "";
    }
    return std::string(number.size() < DIGITS_OF_OFFSET ? DIGITS_OF_OFFSET - number.size() : 0, '0').append(number);
}

std::string plain_line(std::string_view line) {
    const std::string text = gen_remove_leading_and_trailing_white_spaces(without_comments(line));
    std::size_t sign = text.find_first_of(":=");
    if (text.find('<') < sign) {  // of a symbol, whose name may have colons
        sign = text.find_first_of(":=", std::min(text.rfind('>'), text.size()));
    }
    if (sign == std::string::npos) {
        return plain_numbers(text);
    }
    const std::string address = address_of(std::string_view(text).substr(0, sign));
    const std::string_view behind = std::string_view(text).substr(sign + 1);
    return address.empty() ? text : address + ':' + plain_numbers(behind);
}

}  // namespace

std::string plain_dump_of(std::string_view text) {
    std::string plain;
    for_each_line(in_braces(text), [&](std::string_view line) { plain.append(plain_line(line)).push_back('\n'); });
    return plain;
}

#include "flash/hex_text.h"

#include <charconv>
#include <string>

#include "gen.h"

namespace {

constexpr std::string_view HEX_DIGITS = "0123456789ABCDEFabcdef";
constexpr std::string_view BETWEEN_PAIRS = " \t,:-";

bool is_hex_number(std::string_view text) {
    return !text.empty() && text.find_first_not_of(HEX_DIGITS) == std::string_view::npos;
}

std::string_view without_blanks_before(std::string_view text) {
    const std::size_t first = text.find_first_not_of(" \t");
    return first == std::string_view::npos ? std::string_view() : text.substr(first);
}

/// A line of a dump, taken apart.
struct DUMP_LINE {
    std::string_view offset;  ///< "": it has none
    std::string_view pairs;
};

/// `has_offsets`: the lines before have some, so that a number alone is the last one.
DUMP_LINE taken_apart(std::string_view line, bool has_offsets) {
    constexpr std::size_t DIGITS_BEFORE_COLON = 4;   // at least
    constexpr std::size_t DIGITS_BEFORE_BLANKS = 6;  // at least: fewer may be bytes
    const std::size_t end = line.find_first_not_of(HEX_DIGITS);
    const std::string_view number = line.substr(0, end);
    const std::string_view rest = end == std::string_view::npos ? std::string_view() : line.substr(end);
    if (number.size() >= DIGITS_BEFORE_COLON && rest.starts_with(':')) {
        const std::string_view pairs = without_blanks_before(rest.substr(1));
        return {number, pairs.substr(0, pairs.find("  "))};  // behind two blanks stand characters
    }
    const std::string_view pairs = without_blanks_before(rest);
    const bool pairs_follow =
        pairs.size() == 2 || (pairs.size() > 2 && HEX_DIGITS.find(pairs[2]) == std::string_view::npos);
    const bool is_last = rest.empty() && has_offsets;
    if (number.size() >= DIGITS_BEFORE_BLANKS && (pairs_follow || is_last)) {
        return {number, pairs.substr(0, pairs.find('|'))};
    }
    return {"", line};
}

bool append_pairs(std::string_view text, std::vector<BYTE>& bytes) {
    while (!text.empty()) {
        if (BETWEEN_PAIRS.find(text.front()) != std::string_view::npos) {
            text.remove_prefix(1);
            continue;
        }
        if (text.starts_with("0x") || text.starts_with("0X")) {
            text.remove_prefix(2);
        }
        if (text.size() < 2 || !is_hex_number(text.substr(0, 2))) {
            return false;
        }
        BYTE byte = 0;
        std::from_chars(text.data(), text.data() + 2, byte, 16);
        bytes.push_back(byte);
        text.remove_prefix(2);
    }
    return true;
}

/// Repeats `line` up to the offset, which counts from `start`.
bool repeat_up_to(std::string_view offset, std::size_t start, const std::vector<BYTE>& line, std::size_t most,
                  std::vector<BYTE>& bytes) {
    std::size_t end = 0;
    const auto result = std::from_chars(offset.data(), offset.data() + offset.size(), end, 16);
    if (offset.empty() || result.ec != std::errc() || line.empty() || end < start || end - start > most) {
        return false;
    }
    while (bytes.size() < end - start) {
        bytes.insert(bytes.end(), line.begin(), line.end());
    }
    return bytes.size() == end - start;
}

}  // namespace

std::optional<std::vector<BYTE>> bytes_of_hex_text(std::string_view text, std::size_t most) {
    std::vector<BYTE> bytes;
    std::vector<BYTE> last;
    std::size_t start = 0;
    bool is_first = true;
    bool has_offsets = false;
    bool repeats = false;
    while (!text.empty() && bytes.size() <= most) {
        const std::size_t end = text.find('\n');
        const std::string line = gen_remove_leading_and_trailing_white_spaces(std::string(text.substr(0, end)));
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
        if (line.empty()) {
            continue;
        }
        if (line == "*") {
            repeats = true;
            continue;
        }
        const DUMP_LINE parts = taken_apart(line, has_offsets);
        if (is_first && !parts.offset.empty()) {
            std::from_chars(parts.offset.data(), parts.offset.data() + parts.offset.size(), start, 16);
        }
        is_first = false;
        has_offsets = has_offsets || !parts.offset.empty();
        if (repeats && !repeat_up_to(parts.offset, start, last, most, bytes)) {
            return std::nullopt;
        }
        repeats = false;
        last.clear();
        if (!append_pairs(parts.pairs, last)) {
            return std::nullopt;
        }
        bytes.insert(bytes.end(), last.begin(), last.end());
    }
    return repeats || bytes.size() > most ? std::nullopt : std::optional(std::move(bytes));
}

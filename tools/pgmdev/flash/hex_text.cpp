#include "flash/hex_text.h"

#include <charconv>
#include <string>

#include "gen.h"
#include "terminal/input.h"

namespace {

constexpr std::string_view HEX_DIGITS = "0123456789ABCDEFabcdef";
constexpr std::string_view BETWEEN_PAIRS = " \t,:-";

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
        std::optional<std::vector<BYTE>> pairs = bytes_of_hex_pairs(parts.pairs, BETWEEN_PAIRS);
        if (!pairs) {
            return std::nullopt;
        }
        last = std::move(*pairs);
        bytes.insert(bytes.end(), last.begin(), last.end());
    }
    return repeats || bytes.size() > most ? std::nullopt : std::optional(std::move(bytes));
}

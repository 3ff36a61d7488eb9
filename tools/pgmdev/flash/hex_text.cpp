#include "flash/hex_text.h"

#include <algorithm>
#include <charconv>
#include <string>

#include "gen.h"
#include "terminal/input.h"

namespace {

constexpr std::string_view HEX_DIGITS = "0123456789ABCDEFabcdef";
constexpr std::string_view BETWEEN_PAIRS = " \t,:-";

constexpr std::string_view BLANKS = " \t";

std::string_view without_blanks_before(std::string_view text) {
    const std::size_t first = text.find_first_not_of(BLANKS);
    return first == std::string_view::npos ? std::string_view() : text.substr(first);
}

constexpr std::size_t MOST_DIGITS_OF_OFFSET = 16;
constexpr std::size_t DIGITS_BEFORE_WORDS = 7;
constexpr std::size_t DIGITS_OF_A_WORD = 4;

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

/// The bytes of a dump, put together of its lines.
class DUMP_BYTES {
public:
    explicit DUMP_BYTES(std::size_t most) : m_most(most) {}

    /// False: it is no line of the dump.
    bool take(std::string_view line) {
        if (line == "*") {
            m_repeats = true;
            return true;
        }
        const auto words = bytes_of_dump_words(line);
        const DUMP_LINE parts =
            words ? DUMP_LINE{line.substr(0, DIGITS_BEFORE_WORDS), ""} : taken_apart(line, m_has_offsets);
        const auto found = words ? words : bytes_of_hex_pairs(parts.pairs, BETWEEN_PAIRS);
        if (!found || (m_is_first ? m_repeats : !continue_at(parts.offset, found->empty()))) {
            return false;
        }
        if (m_is_first) {
            m_first_offset = parts.offset;
        }
        m_is_first = false;
        m_has_offsets = m_has_offsets || !parts.offset.empty();
        m_repeats = false;
        m_has_words = words.has_value();
        m_last = *found;
        bytes.insert(bytes.end(), m_last.begin(), m_last.end());
        return bytes.size() <= m_most;
    }

    bool is_complete() const { return !m_repeats; }

    std::vector<BYTE> bytes;

private:
    static std::optional<std::size_t> number_of(std::string_view offset, int base) {
        if (offset.size() > MOST_DIGITS_OF_OFFSET) {
            return std::nullopt;
        }
        std::size_t number = 0;
        const char* const end = offset.data() + offset.size();
        const auto result = std::from_chars(offset.data(), end, number, base);
        return offset.empty() || result.ec != std::errc() || result.ptr != end ? std::nullopt : std::optional(number);
    }

    /// How many bytes stand before the offset; nothing when it is no such number.
    std::optional<std::size_t> bytes_before(std::string_view offset, int base) const {
        const std::size_t start = number_of(m_first_offset, base).value_or(0);
        const std::optional<std::size_t> end = number_of(offset, base);
        return !end || *end < start ? std::nullopt : std::optional(*end - start);
    }

    /// Whether a line may follow behind that many bytes.
    bool may_end_at(std::size_t end) const {
        if (m_repeats) {
            return !m_last.empty() && end >= bytes.size() && end <= m_most && (end - bytes.size()) % m_last.size() == 0;
        }
        // The last number of two bytes has a zero more where the bytes are odd; the offset behind it tells.
        return end == bytes.size() || (m_has_words && end + 1 == bytes.size() && bytes.back() == 0);
    }

    /// Goes on with the line of this offset, in the bases in which all of them have led to where they stand. False: bytes are
    /// missing before it, or it does not tell how often a line is repeated.
    bool continue_at(std::string_view offset, bool is_end) {
        std::vector<int> bases;
        for (const int base : m_bases) {
            const std::optional<std::size_t> end = bytes_before(offset, base);
            if (end && may_end_at(*end)) {
                bases.push_back(base);
            }
        }
        if (bases.empty()) {
            const bool leaves_a_gap = m_counts && !is_end && bytes_before(offset, m_bases.front()) > bytes.size();
            return !m_repeats && !m_has_words && !leaves_a_gap;
        }
        m_bases = std::move(bases);
        m_counts = true;
        const std::size_t end = *bytes_before(offset, m_bases.front());
        while (bytes.size() < end) {
            bytes.insert(bytes.end(), m_last.begin(), m_last.end());
        }
        bytes.resize(end);
        return true;
    }

    std::size_t m_most;
    std::vector<BYTE> m_last;
    std::string m_first_offset;
    std::vector<int> m_bases{16, 8, 10};  ///< of the offsets, as far as can be told: `xxd`, `od`, `od -A d`
    bool m_counts = false;                ///< an offset has told what it counts
    bool m_is_first = true;
    bool m_has_offsets = false;
    bool m_has_words = false;  ///< the line before
    bool m_repeats = false;
};

}  // namespace

std::optional<std::vector<BYTE>> bytes_of_dump_words(std::string_view line) {
    if (line.find_first_not_of(HEX_DIGITS) != DIGITS_BEFORE_WORDS) {
        return std::nullopt;
    }
    std::vector<BYTE> bytes;
    for (std::string_view rest = line.substr(DIGITS_BEFORE_WORDS); !rest.empty();) {
        const std::string_view text = without_blanks_before(rest);
        const std::size_t end = std::min(text.find_first_of(BLANKS), text.size());
        const auto word = end == DIGITS_OF_A_WORD ? bytes_of_hex_pairs(text.substr(0, end), "") : std::nullopt;
        if (!word || word->size() != 2) {
            const bool characters_follow = rest.starts_with("  ");
            return bytes.empty() || !characters_follow ? std::nullopt : std::optional(std::move(bytes));
        }
        bytes.insert(bytes.end(), word->rbegin(), word->rend());
        rest = text.substr(end);
    }
    return bytes;
}

std::optional<std::vector<BYTE>> bytes_of_hex_text(std::string_view text, std::size_t most) {
    DUMP_BYTES dump(most);
    while (!text.empty()) {
        const std::size_t end = text.find('\n');
        const std::string line = gen_remove_leading_and_trailing_white_spaces(std::string(text.substr(0, end)));
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
        if (!line.empty() && !dump.take(line)) {
            return std::nullopt;
        }
    }
    return dump.is_complete() ? std::optional(std::move(dump.bytes)) : std::nullopt;
}

#include "flash/hex_text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <string>

#include "gen.h"
#include "hex_pairs.h"

namespace {

constexpr std::string_view BETWEEN_PAIRS = " \t,:-";

constexpr std::string_view BLANKS = " \t";

std::string_view without_blanks_before(std::string_view text) {
    const std::size_t first = text.find_first_not_of(BLANKS);
    return first == std::string_view::npos ? std::string_view() : text.substr(first);
}

constexpr std::array BASES{16, 8, 10};  // of offsets: `xxd`, `od`, `od -A d`
constexpr std::size_t MOST_DIGITS_OF_OFFSET = 16;
constexpr std::size_t DIGITS_BEFORE_WORDS = 7;  // as `hexdump` and `od -x` print them

/// How a dump prints numbers.
struct WORD_FORM {
    std::size_t size;  ///< in bytes
    bool lowest_first;
    bool has_offsets;
};

constexpr WORD_FORM HEXDUMP_FORM{2, true, true};

/// In which a first line may begin with the signature.
constexpr std::array WORD_FORMS{
    WORD_FORM{4, true, true}, WORD_FORM{4, false, true}, WORD_FORM{4, true, false}, WORD_FORM{4, false, false},
    WORD_FORM{2, true, true}, WORD_FORM{2, false, true}, WORD_FORM{2, true, false}, WORD_FORM{2, false, false},
    WORD_FORM{8, true, true}, WORD_FORM{8, false, true}, WORD_FORM{8, true, false}, WORD_FORM{8, false, false},
};

/// The bytes of numbers, behind which characters may stand.
std::optional<std::vector<BYTE>> bytes_of_words(std::string_view rest, const WORD_FORM& form) {
    std::vector<BYTE> bytes;
    while (!rest.empty()) {
        const std::string_view text = without_blanks_before(rest);
        const std::size_t end = std::min(text.find_first_of(BLANKS), text.size());
        auto word = end == 2 * form.size ? bytes_of_hex_pairs(text.substr(0, end), "") : std::nullopt;
        if (!word || word->size() != form.size) {
            const bool characters_follow = rest.starts_with("  ");
            return bytes.empty() || !characters_follow ? std::nullopt : std::optional(std::move(bytes));
        }
        if (form.lowest_first) {
            std::reverse(word->begin(), word->end());
        }
        bytes.insert(bytes.end(), word->begin(), word->end());
        rest = text.substr(end);
    }
    return bytes;
}

/// A line of a dump.
struct DUMP_LINE {
    std::string_view offset;  ///< "": it has none
    std::vector<BYTE> bytes;
    std::size_t most_padding = 0;  ///< zeros that may complete its last number; where any may, offsets must be right
};

/// Offset and pairs of a line. `has_offsets`: the lines before have some, so that a number alone is the last one.
std::array<std::string_view, 2> taken_apart(std::string_view line, bool has_offsets) {
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

/// Of pairs, or of numbers that the line alone tells.
std::optional<DUMP_LINE> line_of_pairs(std::string_view line, bool has_offsets) {
    if (auto words = bytes_of_dump_words(line)) {
        return DUMP_LINE{line.substr(0, DIGITS_BEFORE_WORDS), *std::move(words), HEXDUMP_FORM.size - 1};
    }
    const auto [offset, pairs] = taken_apart(line, has_offsets);
    auto bytes = bytes_of_hex_pairs(pairs, BETWEEN_PAIRS);
    return bytes ? std::optional(DUMP_LINE{offset, *std::move(bytes)}) : std::nullopt;
}

std::optional<DUMP_LINE> line_of_words(std::string_view line, const WORD_FORM& form) {
    if (!form.has_offsets) {
        auto bytes = bytes_of_words(line, form);
        return bytes ? std::optional(DUMP_LINE{"", *std::move(bytes)}) : std::nullopt;
    }
    const std::size_t end = std::min(line.find_first_not_of(HEX_DIGITS), line.size());
    const std::size_t words = end + (line.substr(end).starts_with(':') ? 1 : 0);
    auto bytes = bytes_of_words(line.substr(words), form);  // none of the last offset
    return bytes && end > 0 ? std::optional(DUMP_LINE{line.substr(0, end), *std::move(bytes), form.size - 1})
                            : std::nullopt;
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
        std::optional<DUMP_LINE> found = read(line);
        if (!found || !(m_is_first ? begin_with(*found) : continue_at(found->offset, found->bytes.empty()))) {
            return false;
        }
        m_is_first = false;
        m_has_offsets = m_has_offsets || !found->offset.empty();
        m_repeats = false;
        m_most_padding = found->most_padding;
        m_last = std::move(found->bytes);
        m_last_offset = found->offset;
        bytes.insert(bytes.end(), m_last.begin(), m_last.end());
        return bytes.size() <= m_most;
    }

    bool is_complete() const { return !m_repeats; }

    std::vector<BYTE> bytes;

private:
    /// The line, of pairs unless the first one begins as SFDP only when it is read as numbers: then all are.
    std::optional<DUMP_LINE> read(std::string_view line) {
        if (m_form) {
            return line_of_words(line, *m_form);
        }
        std::optional<DUMP_LINE> pairs = line_of_pairs(line, m_has_offsets);
        if (!m_is_first || (pairs && begins_as_sfdp(pairs->bytes))) {
            return pairs;
        }
        m_form = form_of(line);
        return m_form ? line_of_words(line, *m_form) : pairs;
    }

    /// Begins with that line. False: one before it says that it is repeated.
    bool begin_with(const DUMP_LINE& line) {
        m_first_offset = line.offset;
        return !m_repeats;
    }

    /// Of numbers that begin with the signature, which tells how they are to be read.
    static std::optional<WORD_FORM> form_of(std::string_view line) {
        for (const WORD_FORM& form : WORD_FORMS) {
            const auto words = line_of_words(line, form);
            if (words && begins_as_sfdp(words->bytes)) {
                return form;
            }
        }
        return std::nullopt;
    }

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

    /// Whether more bytes should stand before the offset than do: of all the lines before, or because it counts the bytes of
    /// the last one.
    bool leaves_a_gap(std::string_view offset, bool is_end) const {
        const auto follows_last = [&](int base) {
            const std::optional<std::size_t> end = number_of(offset, base);
            const std::optional<std::size_t> start = number_of(m_last_offset, base);
            return end && start && *start + m_last.size() == *end && !m_last.empty();
        };
        return (m_counts && !is_end && bytes_before(offset, m_bases.front()) > bytes.size()) ||
               std::any_of(BASES.begin(), BASES.end(),
                           [&](int base) { return follows_last(base) && bytes_before(offset, base) > bytes.size(); });
    }

    /// Whether a line may follow behind that many bytes.
    bool may_end_at(std::size_t end) const {
        if (m_repeats) {
            return !m_last.empty() && end >= bytes.size() && end <= m_most && (end - bytes.size()) % m_last.size() == 0;
        }
        // Zeros complete the last number; the offset behind it tells how many.
        return end <= bytes.size() && bytes.size() - end <= m_most_padding &&
               std::all_of(bytes.end() - static_cast<std::ptrdiff_t>(bytes.size() - end), bytes.end(),
                           [](BYTE byte) { return byte == 0; });
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
            return !m_repeats && m_most_padding == 0 && !leaves_a_gap(offset, is_end);
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
    std::optional<WORD_FORM> m_form;  ///< of all lines, where the first one has told it
    std::vector<BYTE> m_last;
    std::string m_first_offset;
    std::string m_last_offset;
    std::vector<int> m_bases{BASES.begin(), BASES.end()};  ///< of the offsets, as far as can be told
    bool m_counts = false;                                 ///< an offset has told what it counts
    bool m_is_first = true;
    bool m_has_offsets = false;
    std::size_t m_most_padding = 0;  ///< of the line before
    bool m_repeats = false;
};

}  // namespace

bool begins_as_sfdp(std::span<const BYTE> bytes) {
    return bytes.size() >= SFDP_SIGNATURE.size() &&
           std::equal(SFDP_SIGNATURE.begin(), SFDP_SIGNATURE.end(), bytes.begin());
}

std::optional<std::vector<BYTE>> bytes_of_dump_words(std::string_view line) {
    if (line.find_first_not_of(HEX_DIGITS) != DIGITS_BEFORE_WORDS) {
        return std::nullopt;
    }
    return bytes_of_words(line.substr(DIGITS_BEFORE_WORDS), HEXDUMP_FORM);
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

#include "flash/log_line.h"

#include <algorithm>
#include <array>
#include <cctype>

#include "ascii.h"
#include "flash/hex_text.h"

namespace {

using BYTES = std::vector<BYTE>;

constexpr std::size_t MOST_BYTES = 32;
constexpr std::size_t MOST_WORDS_BEFORE = 3;
constexpr std::string_view SEPARATORS = " \t\r,;:=()[]{}'\"|<>";

/// Before all that was read, as a tool shows it.
constexpr std::string_view RAW_PHRASE = "rx |";

/// What stands before the bytes of an identification. The longer phrases come first.
constexpr std::array PHRASES{
    std::string_view("jedec id bytes"), std::string_view("id bytes"),
    std::string_view("jedec id"),       std::string_view("jedec_id"),
    std::string_view("jedec-id"),       std::string_view("jedec:"),
    std::string_view("rdid"),           std::string_view("read id"),
    std::string_view("flash id"),       std::string_view("chip id"),
    std::string_view("device id"),      std::string_view("spi id"),
    std::string_view("identification"), std::string_view("idcode"),
    std::string_view("nor id"),         std::string_view("nor: id"),
    std::string_view("read_id"),        std::string_view("flashid"),
    std::string_view("id code"),        RAW_PHRASE,
};

/// Those before a number whose lowest byte is the maker's.
constexpr std::array NUMBER_PHRASES{std::string_view("(id 0x"), std::string_view("' id = 0x")};

/// Fields of one line that make an identification together, in their order.
constexpr std::array FIELD_SETS{
    std::array{std::string_view("id1 "), std::string_view("id2 "), std::string_view("")},
    std::array{std::string_view("manuf "), std::string_view(" jedec "), std::string_view("ext_jedec ")},
    std::array{std::string_view("manufacturer id"), std::string_view("memory type"), std::string_view("capacity")},
    std::array{std::string_view("vendor id"), std::string_view("memory type"), std::string_view("capacity")},
    std::array{std::string_view("manufacturer id"), std::string_view("device id"), std::string_view("")},
    std::array{std::string_view("manufacturer:"), std::string_view("device:"), std::string_view("")},
    std::array{std::string_view("manufacturer:"), std::string_view("memory type"), std::string_view("capacity")},
    std::array{std::string_view("vendor:"), std::string_view("device id"), std::string_view("")},
};

/// What stands before the name of a flash, or of its maker and the flash, and what else a line has that tells it.
struct NAME_PHRASE {
    std::string_view before;
    std::string_view besides;
};
constexpr std::array NAME_PHRASES{NAME_PHRASE{"sf: detected ", ""}, NAME_PHRASE{"flash chip \"", ""},
                                  NAME_PHRASE{"flash chip: ", ""}, NAME_PHRASE{"flash device '", ""},
                                  NAME_PHRASE{"detected: ", "sectors size"}};

std::string lower(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(), ascii_lower);
    return text;
}

bool is_digit(char c) {
    return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f');
}

std::vector<std::string> tokens_of(std::string_view text) {
    std::vector<std::string> tokens;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find_first_of(SEPARATORS), text.size());
        if (end != 0) {
            tokens.emplace_back(text.substr(0, end));
        }
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return tokens;
}

/// The bytes that a word spells, in lower case: "ef", "0xef4018", "efh", "0". None when it spells none.
BYTES bytes_of(std::string word) {
    while (!word.empty() && word.back() == '.') {
        word.pop_back();
    }
    if (word.starts_with("0x")) {
        word.erase(0, 2);
    } else if (word.size() == 3 && word.back() == 'h') {
        word.pop_back();
    }
    if (word.size() == 1) {
        word.insert(word.begin(), '0');
    }
    BYTES bytes;
    if (word.size() % 2 != 0 || word.size() > 2 * MOST_BYTES || !std::all_of(word.begin(), word.end(), is_digit)) {
        return bytes;
    }
    const auto value = [](char c) { return c <= '9' ? c - '0' : c - 'a' + 10; };
    for (std::size_t i = 0; i < word.size(); i += 2) {
        bytes.push_back(static_cast<BYTE>(value(word[i]) * 16 + value(word[i + 1])));
    }
    return bytes;
}

/// What stands before an identification that a program wanted, and did not get.
constexpr std::string_view EXPECTED = "expect";

/// The bytes that `text` begins with, a few words before them left out; none when these say that they were expected.
BYTES bytes_at(std::string_view text) {
    BYTES all;
    std::size_t words = 0;
    for (const std::string& token : tokens_of(text)) {
        const BYTES bytes = bytes_of(token);
        if (all.empty() && token.starts_with(EXPECTED)) {
            break;
        }
        if (bytes.empty() && (!all.empty() || ++words > MOST_WORDS_BEFORE)) {
            break;
        }
        all.insert(all.end(), bytes.begin(), bytes.end());
        if (all.size() >= MOST_BYTES || (!all.empty() && token.back() == '.')) {
            break;
        }
    }
    all.resize(std::min(all.size(), MOST_BYTES));
    return all;
}

BYTES first_word_at(std::string_view text) {
    const std::vector<std::string> tokens = tokens_of(text);
    return tokens.empty() ? BYTES() : bytes_of(tokens.front());
}

std::string last_word_of(std::string_view text) {
    const std::vector<std::string> tokens = tokens_of(text);
    return tokens.empty() ? "" : tokens.back();
}

bool is_idle(BYTE byte) {
    return byte == 0x00 || byte == 0xFF;
}

/// Without what stands before an identification: the command's own byte and, where anything may stand (`raw`), what is
/// read while that is sent.
BYTES without_command(BYTES bytes, bool raw) {
    constexpr BYTE READ_IDENTIFICATION = 0x9F;
    std::size_t before = 0;
    while (raw && before < bytes.size() && is_idle(bytes[before])) {
        ++before;
    }
    before += before < bytes.size() && bytes[before] == READ_IDENTIFICATION ? 1U : 0U;
    if (before + LEAST_IDENTIFICATION <= bytes.size()) {
        bytes.erase(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(before));
    }
    return bytes;
}

BYTES behind_phrases(const std::string& line) {
    BYTES part;
    for (const std::string_view phrase : PHRASES) {
        const std::size_t place = line.find(phrase);
        if (place == std::string::npos || last_word_of(line.substr(0, place)).starts_with(EXPECTED)) {
            continue;
        }
        BYTES bytes =
            without_command(bytes_at(std::string_view(line).substr(place + phrase.size())), phrase == RAW_PHRASE);
        if (bytes.size() >= LEAST_IDENTIFICATION) {
            return bytes;
        }
        part = part.empty() ? bytes : part;
    }
    return part;
}

BYTES behind_number_phrases(const std::string& line) {
    for (const std::string_view phrase : NUMBER_PHRASES) {
        const std::size_t place = line.find(phrase);
        if (place != std::string::npos) {
            BYTES bytes = first_word_at(std::string_view(line).substr(place + phrase.size()));
            while (bytes.size() > LEAST_IDENTIFICATION && bytes.front() == 0) {
                bytes.erase(bytes.begin());
            }
            std::reverse(bytes.begin(), bytes.end());
            return bytes;
        }
    }
    return {};
}

BYTES in_fields(const std::string& line) {
    for (const auto& fields : FIELD_SETS) {
        BYTES all;
        bool complete = true;
        for (const std::string_view field : fields) {
            const std::size_t place = field.empty() ? std::string::npos : line.find(field);
            if (place == std::string::npos) {
                complete = complete && field.empty();
                continue;
            }
            const BYTES bytes = first_word_at(std::string_view(line).substr(place + field.size()));
            all.insert(all.end(), bytes.begin(), bytes.end());
        }
        if (complete && all.size() >= LEAST_IDENTIFICATION) {
            return all;
        }
    }
    return {};
}

/// Whether the word is an offset of a dump that begins there: nothing but zeros, four at least, or a colon behind it.
bool is_first_offset(std::string word) {
    word.erase(0, word.starts_with("0x") ? 2 : 0);
    const bool marked = word.ends_with(':');
    word.erase(word.find_last_not_of(':') + 1);
    return word.find_first_not_of('0') == std::string::npos && (word.size() >= 4 || (marked && !word.empty()));
}

/// What stands before bytes that were received: none of them stands before what was sent, or before addresses.
constexpr std::array RECEIVED_WORDS{
    std::string_view("read"), std::string_view("rx"),       std::string_view("recv"),  std::string_view("received"),
    std::string_view("resp"), std::string_view("response"), std::string_view("reply"), std::string_view("answer")};

/// No flash answers with more, the lengths of what is further in it included.
constexpr std::size_t LONGEST_ANSWER = 20;

std::string_view without_blanks(std::string_view text) {
    constexpr std::string_view BLANKS = " \t\r";
    text.remove_prefix(std::min(text.find_first_not_of(BLANKS), text.size()));
    return text.substr(0, text.find_last_not_of(BLANKS) + 1);
}

/// The bytes of a line that has nothing but "read: 0xef 0x40 0x18", behind a time in brackets at most: it does not say
/// what they are, so that anything else in it may say that they are no identification.
BYTES received_in(const std::string& line) {
    std::string_view text = without_blanks(line);
    if (text.starts_with('[')) {
        text.remove_prefix(std::min(text.find(']'), text.size() - 1) + 1);
    }
    const std::size_t sign = text.find_first_of(":=");
    const auto* const word =
        std::find(RECEIVED_WORDS.begin(), RECEIVED_WORDS.end(), without_blanks(text.substr(0, sign)));
    BYTES all;
    if (sign == std::string_view::npos || word == RECEIVED_WORDS.end()) {
        return all;
    }
    for (const std::string& token : tokens_of(text.substr(sign + 1))) {
        const BYTES bytes = bytes_of(token);
        if (!token.starts_with("0x") || bytes.size() != 1) {
            return {};
        }
        all.push_back(bytes.front());
    }
    return all.size() < LEAST_IDENTIFICATION || all.size() > LONGEST_ANSWER ? BYTES() : all;
}

/// The name of a flash has letters and digits.
bool is_name(const std::string& word) {
    const auto any = [&word](int (*is)(int)) {
        return std::any_of(word.begin(), word.end(), [is](char c) { return is(static_cast<unsigned char>(c)) != 0; });
    };
    return word.size() >= 4 && any([](int c) { return std::isdigit(c); }) && any([](int c) { return std::isalpha(c); });
}

/// The maker's, and that of the flash.
constexpr std::size_t WORDS_OF_A_NAME = 2;

/// The words that a text begins with; names may be in quotation marks, and have parentheses.
std::vector<std::string> words_at(std::string_view text) {
    std::vector<std::string> words;
    while (!text.empty() && words.size() < WORDS_OF_A_NAME) {
        const std::size_t end = std::min(text.find_first_of(" \t\r\"',"), text.size());
        words.emplace_back(text.substr(0, end));
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return words;
}

/// A name, or several with strokes between them.
std::vector<std::string> names_of(const std::string& words) {
    std::vector<std::string> names;
    for (std::size_t begin = 0; begin < words.size();) {
        const std::size_t end = std::min(words.find('/', begin), words.size());
        const std::string name = words.substr(begin, end - begin);
        if (is_name(name)) {
            names.push_back(name);
        }
        begin = end + 1;
    }
    return names;
}

/// What a kernel or a boot loader calls the flash, behind "spi0.0: " or "m25p800: "; found: behind that word.
std::string kernel_name(const std::string& line) {
    const std::size_t driver = std::min(line.find("spi-nor spi"), line.find("m25p80 "));
    const std::size_t colon = driver == std::string::npos ? driver : line.find(": ", driver);
    if (colon == std::string::npos) {
        return "";
    }
    const std::vector<std::string> tokens = tokens_of(std::string_view(line).substr(colon + 2));
    if (tokens.size() > 1 && tokens[0] == "found") {
        return tokens[1];
    }
    const bool states_size = line.find("bytes)", colon) != std::string::npos;
    const auto name = std::find_if(tokens.begin(), tokens.end(), is_name);  // behind that of the maker, if there is one
    return states_size && name != tokens.end() && static_cast<std::size_t>(name - tokens.begin()) < WORDS_OF_A_NAME
               ? *name
               : "";
}

}  // namespace

std::vector<BYTE> identification_in(const std::string& line) {
    const std::string text = lower(line);
    BYTES bytes = in_fields(text);
    if (bytes.empty()) {
        bytes = behind_number_phrases(text);
    }
    const BYTES more = behind_phrases(text);
    const bool goes_on = more.size() > bytes.size() && std::equal(bytes.begin(), bytes.end(), more.begin());
    return goes_on ? more : bytes;
}

bool announces_identification(const std::string& line) {
    const std::string text = lower(line);
    const auto stands_in = [&text](std::string_view phrase) { return text.find(phrase) != std::string::npos; };
    return std::any_of(PHRASES.begin(), PHRASES.end(), stands_in);
}

std::vector<BYTE> field_in(const std::string& line, std::string_view field) {
    const std::string text = lower(line);
    const std::size_t place = text.find(field);
    return place == std::string::npos ? BYTES() : first_word_at(std::string_view(text).substr(place + field.size()));
}

std::vector<BYTE> dump_in(const std::string& line) {
    std::string text = lower(line);
    if (const BYTES received = received_in(text); !received.empty()) {
        return without_command(received, true);
    }
    const std::size_t begin = std::min(text.find_first_not_of(" \t"), text.size());
    const std::size_t end = std::min(text.find_first_of(" \t\r", begin), text.size());
    const std::string first = text.substr(begin, end - begin);
    const bool has_offset = end < text.size() && is_first_offset(first);
    const std::optional<BYTES> numbers = has_offset ? bytes_of_dump_words(without_blanks(text)) : std::nullopt;
    text.erase(0, has_offset ? end : begin);
    text.erase(std::min(text.find("  ", text.find_first_not_of(" \t")), text.size()));  // characters, or a gap
    const std::vector<std::string> words = tokens_of(text);
    const bool is_number = !words.empty() && words.front().size() == 4 && first.size() == 7;
    BYTES all = numbers.value_or(BYTES());
    for (std::size_t i = 0; i < words.size() && !numbers; ++i) {
        const BYTES bytes = bytes_of(words[i]);
        if (bytes.empty() || (has_offset && is_number) || (!has_offset && bytes.size() != 1 && words.size() > 1)) {
            return {};
        }
        all.insert(all.end(), bytes.begin(), bytes.end());
    }
    constexpr std::array<BYTE, 4> SELF_DESCRIPTION{'S', 'F', 'D', 'P'};
    const bool describes = all.size() >= 4 && std::equal(SELF_DESCRIPTION.begin(), SELF_DESCRIPTION.end(), all.begin());
    return all.size() < LEAST_IDENTIFICATION || describes ? BYTES() : without_command(all, true);
}

std::vector<std::string> names_in(const std::string& line) {
    const std::string text = lower(line);
    for (const NAME_PHRASE& phrase : NAME_PHRASES) {
        const std::size_t place = text.find(phrase.before);
        if (place == std::string::npos || text.find(phrase.besides) == std::string::npos) {
            continue;
        }
        const std::vector<std::string> words = words_at(std::string_view(line).substr(place + phrase.before.size()));
        for (const std::string& word : words) {
            std::vector<std::string> names = names_of(word);
            if (!names.empty()) {
                return names;
            }
        }
        return {};
    }
    return names_of(kernel_name(text));
}

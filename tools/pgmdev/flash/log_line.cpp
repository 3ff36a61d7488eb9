#include "flash/log_line.h"

#include <algorithm>
#include <array>
#include <cctype>

#include "flash/log_words.h"

namespace {

using BYTES = std::vector<BYTE>;

constexpr std::size_t MOST_WORDS_BEFORE = 3;

/// Before all that was read, as a tool shows it.
constexpr std::string_view RAW_PHRASE = "rx |";

/// What stands before the bytes of an identification. The longer phrases come first.
constexpr auto PHRASES = std::to_array<std::string_view>(
    {"jedec id bytes", "id bytes", "jedec id", "jedec:", "rdid", "read id", "flash id", "chip id", "device id",
     "spi id", "identification", "idcode", "nor id", "nor: id", "flashid", "id code", RAW_PHRASE});

/// Those before a number whose lowest byte is the maker's.
constexpr std::array NUMBER_PHRASES{std::string_view("(id 0x"), std::string_view("' id = 0x")};

/// Fields of one line that make an identification together, in their order.
constexpr std::array FIELD_SETS{
    std::array{std::string_view("id1 "), std::string_view("id2 "), std::string_view("")},
    std::array{std::string_view("manuf "), std::string_view(" jedec "), std::string_view("ext jedec ")},
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

/// In which words are set apart by blanks, also those of names in programs, "jedec_id", and bytes, "EF-40-18".
std::string words_of_line(const std::string& line) {
    std::string text = lower_line(line);
    std::replace(text.begin(), text.end(), '_', ' ');
    std::replace(text.begin(), text.end(), '-', ' ');
    return text;
}

/// The bytes that `text` begins with, a few words before them left out.
BYTES bytes_at(std::string_view text) {
    BYTES all;
    std::size_t words = 0;
    for (const std::string& token : tokens_of(text)) {
        const BYTES bytes = bytes_of(token);
        if (bytes.empty() && (!all.empty() || ++words > MOST_WORDS_BEFORE)) {
            break;
        }
        all.insert(all.end(), bytes.begin(), bytes.end());
        if (all.size() >= MOST_LOG_BYTES || (!all.empty() && token.back() == '.')) {
            break;
        }
    }
    all.resize(std::min(all.size(), MOST_LOG_BYTES));
    return all;
}

BYTES first_word_at(std::string_view text) {
    const std::vector<std::string> tokens = tokens_of(text);
    return tokens.empty() ? BYTES() : bytes_of(tokens.front());
}

BYTES behind_phrases(const std::string& line) {
    BYTES part;
    for (const std::string_view phrase : PHRASES) {
        const std::size_t place = line.find(phrase);
        if (place == std::string::npos) {
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
    const std::string text = words_of_line(line);
    BYTES bytes = in_fields(text);
    if (bytes.empty()) {
        bytes = behind_number_phrases(text);
    }
    const BYTES more = behind_phrases(text);
    const bool goes_on = more.size() > bytes.size() && std::equal(bytes.begin(), bytes.end(), more.begin());
    return goes_on ? more : bytes;
}

bool announces_identification(const std::string& line) {
    const std::string text = words_of_line(line);
    const auto stands_in = [&text](std::string_view phrase) { return text.find(phrase) != std::string::npos; };
    return std::any_of(PHRASES.begin(), PHRASES.end(), stands_in);
}

bool announces_what_was_expected(const std::string& line) {
    const std::string expectation = lower_line(expectation_in(line));
    const std::vector<std::string> words = tokens_of(expectation);
    std::size_t bytes = 0;
    for (const std::string& word : words) {
        bytes += bytes_of(word).size();
    }
    const bool names_it = words.size() == 1 || announces_identification(expectation) ||
                          std::find(words.begin(), words.end(), "id") != words.end();
    return !words.empty() && names_it && bytes < LEAST_IDENTIFICATION;
}

std::vector<BYTE> field_in(const std::string& line, std::string_view field) {
    const std::string text = lower_line(line);
    const std::size_t place = text.find(field);
    return place == std::string::npos ? BYTES() : first_word_at(std::string_view(text).substr(place + field.size()));
}

std::vector<std::string> names_in(const std::string& line) {
    const std::string text = lower_line(line);
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

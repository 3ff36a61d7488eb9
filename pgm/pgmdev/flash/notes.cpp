#include "pgmdev_flash_notes.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <optional>
#include <sstream>

#include "flash/byte_pattern.h"
#include "flash/hex.h"
#include "flash/matching.h"
#include "gen.h"
#include "source/faults.h"
#include "source/note_lines.h"

// Reading the two tables, and what they say of a response.

namespace {

using RISK = PGMDEV_FLASH_DIFFERENCE::RISK;
using FAULTS = std::vector<PGMDEV_TABLE_FAULT>;

constexpr std::array<std::string_view, 6> AMBIGUITY_COLUMNS{"response",      "chips", "byte",
                                                            "told_apart_by", "risk",  "harm"};
enum class AMBIGUITY_CELL { RESPONSE, CHIPS, TELLING_BYTE, TOLD_APART_BY, RISK_NAME, HARM };

constexpr std::array<std::string_view, 2> IDENTIFICATION_COLUMNS{"device_name", "identification"};
constexpr std::size_t DEVICE_NAME_CELL = 0;
constexpr std::size_t DIGITS_CELL = 1;

constexpr const char* NO_BYTE = "-";

bool are_byte_digits(const std::string& text) {
    return !text.empty() && text.size() % 2 == 0 && text.size() <= 2 * FLASH_RESPONSE_SIZE &&
           text.find_first_not_of(UPPER_HEX_DIGITS) == std::string::npos;
}

std::vector<BYTE> bytes_of(const std::string& digits) {
    std::vector<BYTE> bytes;
    for (std::size_t i = 0; i + 1 < digits.size(); i += 2) {
        bytes.push_back(
            static_cast<BYTE>(UPPER_HEX_DIGITS.find(digits[i]) * 16 + UPPER_HEX_DIGITS.find(digits[i + 1])));
    }
    return bytes;
}

std::vector<std::string> words_of(const std::string& text) {
    std::istringstream input(text);
    input.exceptions(std::ios::badbit);  // a failing allocation is not the end
    std::vector<std::string> words;
    for (std::string word; input >> word;) {
        words.push_back(word);
    }
    return words;
}

std::optional<RISK> risk_of(const std::string& name) {
    for (int i = 0; i <= static_cast<int>(RISK::NONE); ++i) {
        if (name == PGMDEV_FLASH_CANDIDATES::risk_name(static_cast<RISK>(i))) {
            return static_cast<RISK>(i);
        }
    }
    return std::nullopt;
}

/// The position of a byte; INVALID_DWORD for none.
std::optional<DWORD> position_of(const std::string& text) {
    if (text == NO_BYTE) {
        return INVALID_DWORD;
    }
    DWORD position = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), position);
    const bool valid = error == std::errc() && end == text.data() + text.size() && position < FLASH_RESPONSE_SIZE;
    return valid ? std::optional(position) : std::nullopt;
}

/// The line as an ambiguity; faults when it is none.
std::optional<PGMDEV_FLASH_AMBIGUITY> ambiguity_of(const NOTE_LINE& line, FAULTS& faults) {
    using enum AMBIGUITY_CELL;
    const auto text = [&line](AMBIGUITY_CELL cell) { return line.cells[static_cast<std::size_t>(cell)]; };
    const auto refuse = [&](AMBIGUITY_CELL cell, const char* expected) {
        faults.push_back(note_fault(line, static_cast<std::size_t>(cell), AMBIGUITY_COLUMNS, expected));
    };
    const std::size_t before = faults.size();
    const std::optional<DWORD> position = position_of(text(TELLING_BYTE));
    const std::optional<RISK> risk = risk_of(text(RISK_NAME));
    const std::vector<std::string> chips = words_of(text(CHIPS));
    if (!are_byte_digits(text(RESPONSE))) {
        refuse(RESPONSE, "pairs of hexadecimal digits in upper case");
    }
    if (chips.size() < 2) {
        refuse(CHIPS, "two chips or more, with blanks between them");
    }
    if (!position) {
        refuse(TELLING_BYTE, "the position of the byte that tells the chips apart, 0 to 255, or - when none does");
    }
    if (!risk) {
        refuse(RISK_NAME, "one of data, voltage, protection, flow, time and none");
    }
    if (faults.size() != before) {
        return std::nullopt;
    }
    return PGMDEV_FLASH_AMBIGUITY{line.number,
                                  line.columns[static_cast<std::size_t>(CHIPS)],
                                  bytes_of(text(RESPONSE)),
                                  chips,
                                  *position,
                                  text(TOLD_APART_BY),
                                  *risk,
                                  text(HARM)};
}

std::string directory_of(const std::string& file) {
#if defined(_WIN32)
    constexpr const char* SEPARATORS = "/\\:";
#else
    constexpr const char* SEPARATORS = "/";
#endif
    return file.substr(0, file.find_last_of(SEPARATORS) + 1);
}

/// The bytes of the response that are not those of the identification.
std::vector<PGMDEV_FLASH_CONTRADICTION> differing(const std::vector<std::string>& identification, const BYTE* response,
                                                  DWORD given) {
    std::vector<PGMDEV_FLASH_CONTRADICTION> found;
    for (DWORD i = 0; i < given && i < identification.size(); ++i) {
        if (!fits_pattern(identification[i], response[i])) {
            found.push_back({i, response[i], identification[i]});
        }
    }
    return found;
}

}  // namespace

std::vector<std::string> PGMDEV_FLASH_NOTES::files_of_source(const std::string& csv_file) {
    return {directory_of(csv_file) + "ambiguities.csv", directory_of(csv_file) + "identifications.csv"};
}

std::vector<std::string> PGMDEV_FLASH_NOTES::files_of_database(const std::string& pcf_file) {
    return {pcf_file + ".ambiguities.csv", pcf_file + ".identifications.csv"};
}

PGMDEV_FLASH_NOTES PGMDEV_FLASH_NOTES::beside_source(const std::string& csv_file) {
    return PGMDEV_FLASH_NOTES(files_of_source(csv_file));
}

PGMDEV_FLASH_NOTES PGMDEV_FLASH_NOTES::beside_database(const std::string& pcf_file) {
    return PGMDEV_FLASH_NOTES(files_of_database(pcf_file));
}

PGMDEV_FLASH_NOTES::PGMDEV_FLASH_NOTES(const std::vector<std::string>& files) {
    read_ambiguities(files[0]);
    read_identifications(files[1]);
}

void PGMDEV_FLASH_NOTES::read_ambiguities(const std::string& file) {
    const auto lines = read_note_lines(file, AMBIGUITY_COLUMNS, m_ambiguities_file.faults);
    if (!lines) {
        return;
    }
    m_ambiguities_file.file = file;
    for (const NOTE_LINE& line : *lines) {
        if (auto ambiguity = ambiguity_of(line, m_ambiguities_file.faults)) {
            m_ambiguities.push_back(std::move(*ambiguity));
        }
    }
}

void PGMDEV_FLASH_NOTES::read_identifications(const std::string& file) {
    const auto lines = read_note_lines(file, IDENTIFICATION_COLUMNS, m_identifications_file.faults);
    if (!lines) {
        return;
    }
    m_identifications_file.file = file;
    for (const NOTE_LINE& line : *lines) {
        auto bytes = byte_patterns_of(line.cells[DIGITS_CELL]);
        if (bytes && bytes->size() <= FLASH_RESPONSE_SIZE) {
            m_identifications.push_back(
                {line.number, line.columns[DIGITS_CELL], line.cells[DEVICE_NAME_CELL], std::move(*bytes)});
        } else {
            m_identifications_file.faults.push_back(
                note_fault(line, DIGITS_CELL, IDENTIFICATION_COLUMNS,
                           "pairs of hexadecimal digits in upper case, ? for any digit, [0-3] for one of these"));
        }
    }
}

std::vector<PGMDEV_FLASH_AMBIGUITY> PGMDEV_FLASH_NOTES::ambiguities_of(const BYTE* response, DWORD given) const {
    std::vector<PGMDEV_FLASH_AMBIGUITY> found;
    for (const PGMDEV_FLASH_AMBIGUITY& ambiguity : m_ambiguities) {
        const bool decided = ambiguity.telling_byte != INVALID_DWORD && ambiguity.telling_byte < given;
        if (decided || ambiguity.response.size() > given ||
            !std::equal(ambiguity.response.begin(), ambiguity.response.end(), response)) {
            continue;
        }
        PGMDEV_FLASH_AMBIGUITY open = ambiguity;
        std::erase_if(open.chips,
                      [&](const std::string& chip) { return !contradictions(chip, response, given).empty(); });
        if (open.chips.size() > 1) {
            found.push_back(std::move(open));
        }
    }
    std::stable_sort(found.begin(), found.end(), [](const auto& a, const auto& b) { return a.risk < b.risk; });
    return found;
}

std::vector<PGMDEV_FLASH_CONTRADICTION> PGMDEV_FLASH_NOTES::contradictions(const std::string& device_name,
                                                                           const BYTE* response, DWORD given) const {
    std::vector<PGMDEV_FLASH_CONTRADICTION> fewest;
    bool known = false;
    for (const IDENTIFICATION& identification : m_identifications) {
        if (gen_stricmp(identification.device_name, device_name) != 0) {
            continue;
        }
        std::vector<PGMDEV_FLASH_CONTRADICTION> found = differing(identification.bytes, response, given);
        if (!known || found.size() < fewest.size()) {
            fewest = std::move(found);
        }
        known = true;
    }
    return fewest;
}

std::vector<std::string> PGMDEV_FLASH_NOTES::devices_of(const BYTE* response, DWORD given) const {
    std::vector<std::string> names;
    for (const IDENTIFICATION& identification : m_identifications) {
        const bool is_new = std::find(names.begin(), names.end(), identification.device_name) == names.end();
        if (is_new && differing(identification.bytes, response, given).empty()) {
            names.push_back(identification.device_name);
        }
    }
    return names;
}

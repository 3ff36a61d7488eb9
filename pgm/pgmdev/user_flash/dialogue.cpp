#include "user_flash/dialogue.h"

#include <array>
#include <bit>
#include <cstdint>
#include <istream>
#include <optional>
#include <ostream>

#include "gen.h"
#include "pgm_common.h"
#include "pgmdev_types.h"
#include "user_flash/codec.h"
#include "user_flash/text.h"

namespace {

constexpr DWORD MOST_DEVICES = 3;
constexpr std::size_t LONGEST_TEXT = 19;
constexpr DWORD MBIT = 0x100000;
constexpr DWORD KBYTE = 0x400;
constexpr DWORD THREE_BYTE_ADDRESSES = 0x8000000;  ///< bits that 24-bit addresses reach
constexpr BYTE NOT_COMPARED = 255;

constexpr const char* NOT_A_DEFINITION = "Invalid input or too many flash to define\n";

/// How the value of a member is found.
enum class ANSWER {
    GIVEN,            ///< not asked for
    NAME,             ///< a text, with a message of its own
    TEXT,             ///< a text
    YES_NO,           ///< Y or N
    HEX,              ///< hexadecimal
    HEX_OR_ALL_ONES,  ///< hexadecimal, or FFFFFFFF for 255
    HEX_OR_NONE,      ///< hexadecimal, or -1 (or FFFFFFFF) for 255
    NUMBER,           ///< decimal
    POWER_OF_TWO      ///< decimal, a power of two
};

struct QUESTION {
    ANSWER answer;
    const char* text;  ///< the prompt; the value itself where nothing is asked
    DWORD least = 0;
    DWORD most = 0;
    DWORD unit = 1;  ///< what the number is multiplied by
};

/// One per member, in record order.
constexpr std::array<QUESTION, USER_FLASH_VALUES> QUESTIONS{{
    {ANSWER::NAME, "Manufacture Name : "},
    {ANSWER::NAME, "Device Name : "},
    {ANSWER::GIVEN, "0"},  // silicon_id
    {ANSWER::HEX, "Memory ID (hex) [1 - FE] : ", 1, 0xFE},
    {ANSWER::HEX, "Memory ID Index [0/1/2] : ", 0, 2},
    {ANSWER::HEX_OR_ALL_ONES, "Memory Type (hex) [0 - FF] : ", 0, 0xFF},
    {ANSWER::HEX_OR_NONE, "Memory Type Index [-1/0/1/2] : ", 0, 2},
    {ANSWER::HEX, "Manufacturer ID (hex) [1 - FE] : ", 1, 0xFE},
    {ANSWER::HEX, "Manufacturer ID Index [0/1/2] : ", 0, 2},
    {ANSWER::GIVEN, "32"},    // orvane_id
    {ANSWER::GIVEN, "1"},     // default_dev
    {ANSWER::GIVEN, "NONE"},  // ini: always enabled
    {ANSWER::YES_NO, "Support Extended Mode [Y/N] : "},
    {ANSWER::YES_NO, "Micron flow [Y/N] : "},
    {ANSWER::YES_NO, "Spansion flow [Y/N] : "},
    {ANSWER::YES_NO, "Protected after power-up [Y/N] : "},
    {ANSWER::YES_NO, "Is AAI mode [Y/N] : "},
    {ANSWER::YES_NO, "Read flag status [Y/N] : "},
    {ANSWER::HEX, "Die count [1/2] : ", 1, 2},
    {ANSWER::POWER_OF_TWO, "Memory Density [1 - 2048 Mbit] : ", 1, 2048, MBIT},
    {ANSWER::POWER_OF_TWO, "Sector Size [1 - 1024 Kbyte] : ", 1, 1024, KBYTE},
    {ANSWER::GIVEN, "0"},  // half_size
    {ANSWER::GIVEN, "0"},  // byte4_addressing: follows from the size
    {ANSWER::NUMBER, "Bulk Erase time [1 - 900 seconds] : ", 1, 900},
    {ANSWER::NUMBER, "Sector Erase Time [1 - 60 seconds] : ", 1, 60},
    {ANSWER::NUMBER, "Page Program Time [1000 - 1000000 microseconds] : ", 1000, 1000000},
    {ANSWER::HEX_OR_ALL_ONES, "Protection Mask (hex) [0 - FF] : ", 0, 0xFF},
    {ANSWER::HEX_OR_ALL_ONES, "Protection Value (hex) [0 - FF] : ", 0, 0xFF},
    {ANSWER::HEX_OR_ALL_ONES, "Unprotect Value (hex) [0 - FF] : ", 0, 0xFF},
    {ANSWER::HEX_OR_NONE, "Protection Divisor (hex) [-1/3 - 20] : ", 3, 0x20},
    {ANSWER::HEX_OR_NONE, "Bottom Value (bit location) [-1/0 - 7] : ", 0, 7},
    {ANSWER::YES_NO, "SDM Support [Y/N] : "},
    {ANSWER::TEXT, "AS Configuration Voltage : "},
}};

constexpr std::size_t BYTE4_ADDRESSING = [] {
    std::size_t i = 0;
    while (PGMDEV_SFL_FLASH_MEMBERS[i].name != "byte4_addressing") {
        ++i;
    }
    return i;
}();

std::string read_answer(std::istream& answers, std::ostream& prompts, const char* prompt) {
    prompts << prompt << std::flush;
    std::string line;
    std::getline(answers, line);
    return line;
}

bool is_hexadecimal(ANSWER answer) {
    return answer == ANSWER::HEX || answer == ANSWER::HEX_OR_ALL_ONES || answer == ANSWER::HEX_OR_NONE;
}

/// The text of the number that `line` spells; nothing when it is not accepted.
std::optional<std::string> number_value(const QUESTION& question, const std::string& line) {
    const bool none = question.answer == ANSWER::HEX_OR_NONE && line == "-1";
    const std::string spelled = none ? "FFFFFFFF" : line;
    bool valid = false;
    const DWORD number = PGM_COMMON::convert_string_to_dword(is_hexadecimal(question.answer) ? "0x" + spelled : spelled,
                                                             true, &valid, nullptr, true);
    if (!valid) {
        return std::nullopt;
    }
    if (number == INVALID_DWORD &&
        (question.answer == ANSWER::HEX_OR_ALL_ONES || question.answer == ANSWER::HEX_OR_NONE)) {
        return std::to_string(number & 0xFF);
    }
    if (number < question.least || number > question.most ||
        (question.answer == ANSWER::POWER_OF_TWO && !std::has_single_bit(number))) {
        return std::nullopt;
    }
    return std::to_string(static_cast<std::int32_t>(number * question.unit));  // signed: 2048 Mbit come out negative
}

/// The value that an answer stands for; nothing when it is not accepted.
std::optional<std::string> value_of(const QUESTION& question, const std::string& line) {
    switch (question.answer) {
        case ANSWER::GIVEN:
            return question.text;
        case ANSWER::NAME:
        case ANSWER::TEXT:
            return !line.empty() && line.size() <= LONGEST_TEXT ? std::optional(line) : std::nullopt;
        case ANSWER::YES_NO:
            return line == "Y"   ? std::optional<std::string>("1")
                   : line == "N" ? std::optional<std::string>("0")
                                 : std::nullopt;
        default:
            return number_value(question, line);
    }
}

bool ask_values(std::istream& answers, std::ostream& prompts, std::array<std::string, USER_FLASH_VALUES>& values) {
    for (std::size_t i = 0; i < values.size(); ++i) {
        const QUESTION& question = QUESTIONS[i];
        std::string line;
        if (question.answer != ANSWER::GIVEN) {
            line = gen_ascii_toupper(read_answer(answers, prompts, question.text));
        }
        const auto value = value_of(question, line);
        if (!value) {
            prompts << (question.answer == ANSWER::NAME ? "Empty name or name too long\n" : "") << "Invalid input\n";
            return false;
        }
        values[i] = *value;
    }
    return true;
}

bool indexes_differ(const PGMDEV_SFL_FLASH_INFO& record) {
    const bool type_apart =
        record.memory_type_index == NOT_COMPARED ||
        (record.memory_type_index != record.memory_id_index && record.memory_type_index != record.mfc_id_index);
    return type_apart && record.memory_id_index != record.mfc_id_index;
}

}  // namespace

bool ask_user_flash(std::istream& answers, std::ostream& prompts, std::string& body) {
    std::array<std::string, USER_FLASH_VALUES> values;
    if (!ask_values(answers, prompts, values)) {
        return false;
    }
    PGMDEV_SFL_FLASH_INFO record;
    assign_user_flash(values, record);
    if (!indexes_differ(record)) {
        prompts << "Memory ID, Memory Type and Manufacturer ID index cannot be at the same location";
        return false;
    }
    values[BYTE4_ADDRESSING] = record.device_bit_size > THREE_BYTE_ADDRESSES ? "1" : "0";

    body.clear();
    for (const std::string& value : values) {
        body += USER_FLASH_VALUE_MARK + value;
    }
    body += USER_FLASH_VALUE_MARK;
    prompts << "Prompt outcome: " << body << '\n';
    return true;
}

std::string define_user_flash(std::istream& answers, std::ostream& prompts) {
    bool valid = false;
    const DWORD count = PGM_COMMON::convert_string_to_dword(
        read_answer(answers, prompts, "Number of 3rd party flash to define (max 3) : "), true, &valid, nullptr, true);
    if (!valid) {
        prompts << NOT_A_DEFINITION;
        return {};
    }
    if (count < 1 || count > MOST_DEVICES) {
        return {};
    }
    std::string text;
    for (DWORD i = 0; i < count; ++i) {
        std::string body;
        if (!ask_user_flash(answers, prompts, body)) {
            prompts << NOT_A_DEFINITION;
            return {};
        }
        text += body + USER_FLASH_BODY_END + user_flash_password(body) + USER_FLASH_TEXT_END;
        prompts << "Raw: " << text << '\n';
    }
    const USER_FLASH_CODING encoded = encode_user_flash(text);
    if (encoded.failure != nullptr) {
        prompts << encoded.failure;
        return {};
    }
    const USER_FLASH_CODING decoded = decode_user_flash(encoded.text);
    if (decoded.failure != nullptr) {
        prompts << decoded.failure;
        return {};
    }
    if (decoded.text.empty()) {
        return {};
    }
    if (decoded.text != text) {
        prompts << "Fail to generate INI because fail to counter-check cmp-encode-decode-decmp\n";
        return {};
    }
    prompts << "INI : " << encoded.text << '\n';
    return encoded.text;
}

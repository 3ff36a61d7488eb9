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
constexpr DWORD THREE_BYTE_ADDRESSES = 0x8000000;  ///< bits that 24-bit addresses reach

constexpr const char* NOT_A_DEFINITION = "Invalid input or too many flash to define\n";

using QUESTION = PGMDEV_SFL_FLASH_QUESTION;
using ANSWER = QUESTION::ANSWER;

constexpr std::size_t BYTE4_ADDRESSING = [] {
    std::size_t i = 0;
    while (PGMDEV_SFL_FLASH_MEMBERS[i].name != "byte4_addressing") {
        ++i;
    }
    return i;
}();

std::string read_answer(std::istream& answers, std::ostream& prompts, std::string_view prompt) {
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
            return std::string(question.text);
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
        const QUESTION& question = PGMDEV_SFL_FLASH_MEMBERS[i].question;
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
        record.memory_type_index == PGMDEV_SFL_FLASH_INFO::NONE ||
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

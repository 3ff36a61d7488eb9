#include "user_flash/questions.h"

#include <array>
#include <bit>
#include <cstdint>

#include "pgm_common.h"
#include "pgmdev_types.h"
#include "user_flash/text.h"

namespace {

using QUESTION = PGMDEV_SFL_FLASH_QUESTION;
using ANSWER = QUESTION::ANSWER;

constexpr std::array TEARING{USER_FLASH_VALUE_MARK, USER_FLASH_BODY_END, USER_FLASH_TEXT_END};

bool is_text(ANSWER answer) {
    return answer == ANSWER::NAME || answer == ANSWER::TEXT;
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

std::string hexadecimal(DWORD number) {
    constexpr std::string_view DIGITS = "0123456789ABCDEF";
    constexpr DWORD BASE = 16;
    std::string text;
    do {
        text.insert(text.begin(), DIGITS[number % BASE]);
        number /= BASE;
    } while (number != 0);
    return text;
}

}  // namespace

std::optional<std::string> user_flash_value(const QUESTION& question, const std::string& answer) {
    switch (question.answer) {
        case ANSWER::NAME:
        case ANSWER::TEXT:
            return answer.size() >= question.least && answer.size() <= question.most ? std::optional(answer)
                                                                                     : std::nullopt;
        case ANSWER::YES_NO:
            return answer == "Y"   ? std::optional<std::string>("1")
                   : answer == "N" ? std::optional<std::string>("0")
                                   : std::nullopt;
        default:
            return number_value(question, answer);
    }
}

bool tears_user_flash(const QUESTION& question, std::string_view answer) {
    return (is_text(question.answer) || question.answer == ANSWER::GIVEN) &&
           answer.find_first_of(std::string_view(TEARING.data(), TEARING.size())) != std::string_view::npos;
}

std::string accepted_user_flash_answers(const QUESTION& question) {
    if (question.answer == ANSWER::YES_NO) {
        return "Y or N";
    }
    const bool hexadecimal_digits = is_hexadecimal(question.answer);
    const auto spelled = [&](DWORD number) {
        return hexadecimal_digits ? hexadecimal(number) : std::to_string(number);
    };
    std::string range = spelled(question.least) + " to " + spelled(question.most);
    switch (question.answer) {
        case ANSWER::NAME:
        case ANSWER::TEXT:
            return range + " characters, none of them @, # or ;";
        case ANSWER::HEX_OR_NONE:
            return range + " in hexadecimal, or -1 for none";
        case ANSWER::HEX:
        case ANSWER::HEX_OR_ALL_ONES:
            return range + " in hexadecimal";
        case ANSWER::POWER_OF_TWO:
            return "a power of two, " + range;
        default:
            return range;
    }
}

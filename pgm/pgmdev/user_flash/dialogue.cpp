#include "user_flash/dialogue.h"

#include <array>
#include <istream>
#include <optional>
#include <ostream>

#include "gen.h"
#include "pgm_common.h"
#include "pgmdev_types.h"
#include "printing.h"
#include "text_lines.h"
#include "user_flash/questions.h"
#include "user_flash/sealing.h"
#include "user_flash/text.h"

namespace {

constexpr DWORD THREE_BYTE_ADDRESSES = 0x8000000;  ///< bits that 24-bit addresses reach

constexpr const char* COUNT_PROMPT = "Number of 3rd party flash to define (max 3) : ";
constexpr const char* NOT_A_DEFINITION = "Invalid input or too many flash to define\n";

using QUESTION = PGMDEV_SFL_FLASH_QUESTION;

/// Where answers come from, where prompts go, and who hears of refused answers.
struct CONVERSATION {
    std::istream& answers;
    std::ostream& prompts;
    const USER_FLASH_ASK_AGAIN& ask_again;

    bool is_with_a_person() const { return static_cast<bool>(ask_again); }

    std::string ask(std::string_view prompt) const {
        print(prompts, {prompt});
        std::string line;
        std::getline(answers, line);
        if (is_with_a_person() && line.ends_with('\r')) {
            line.pop_back();
        }
        return line;
    }

    /// Whether the question is put again. The end of the input is the end.
    bool asks_again(std::string_view prompt, const std::string& answer, const std::string& accepted) const {
        return is_with_a_person() && ask_again({std::string(prompt), answer, accepted}) && answers.good();
    }
};

/// The value that is answered; nothing when the dialogue ends here.
std::optional<std::string> ask_value(const CONVERSATION& talk, const QUESTION& question) {
    if (question.answer == QUESTION::ANSWER::GIVEN) {
        return std::string(question.text);
    }
    for (;;) {
        const std::string line = talk.ask(question.text);
        const std::string answer = gen_ascii_toupper(line);
        const bool tears = talk.is_with_a_person() && tears_user_flash(question, answer);
        if (auto value = user_flash_value(question, answer); value && !tears) {
            return value;
        }
        const bool is_unnamed = question.answer == QUESTION::ANSWER::NAME && !tears;
        print(talk.prompts, {is_unnamed ? "Empty name or name too long\n" : "", "Invalid input\n"});
        if (!talk.asks_again(question.text, line, accepted_user_flash_answers(question))) {
            return std::nullopt;
        }
    }
}

bool indexes_differ(const PGMDEV_SFL_FLASH_INFO& record) {
    const bool type_apart =
        record.memory_type_index == PGMDEV_SFL_FLASH_INFO::NONE ||
        (record.memory_type_index != record.memory_id_index && record.memory_type_index != record.mfc_id_index);
    return type_apart && record.memory_id_index != record.mfc_id_index;
}

bool ask_for_flash(const CONVERSATION& talk, std::string& body) {
    std::array<std::string, USER_FLASH_VALUES> values;
    for (std::size_t i = 0; i < values.size(); ++i) {
        const std::optional<std::string> value = ask_value(talk, PGMDEV_SFL_FLASH_MEMBERS[i].question);
        if (!value) {
            return false;
        }
        values[i] = *value;
    }
    PGMDEV_SFL_FLASH_INFO record;
    assign_user_flash(values, record);
    if (!indexes_differ(record)) {
        print(talk.prompts, {"Memory ID, Memory Type and Manufacturer ID index cannot be at the same location"});
        return false;
    }
    record.byte4_addressing = record.device_bit_size > THREE_BYTE_ADDRESSES;
    body += user_flash_body(record);
    print(talk.prompts, {"Prompt outcome: ", body, "\n"});
    return true;
}

/// How many flash devices there are; nothing when the dialogue ends here.
std::optional<DWORD> ask_count(const CONVERSATION& talk) {
    for (;;) {
        std::string line = talk.ask(COUNT_PROMPT);
        if (talk.is_with_a_person()) {
            line = std::string(without_byte_order_mark(line));
        }
        bool valid = false;
        const DWORD count = PGM_COMMON::convert_string_to_dword(line, true, &valid, nullptr, true);
        if (valid && count >= 1 && count <= PGMDEV_USER_FLASH::MOST_FLASHES) {
            return count;
        }
        print(talk.prompts, {valid ? "" : NOT_A_DEFINITION});
        if (!talk.asks_again(COUNT_PROMPT, line, "1, 2 or 3")) {
            return std::nullopt;
        }
    }
}

}  // namespace

bool ask_user_flash(std::istream& answers, std::ostream& prompts, std::string& body) {
    return ask_for_flash({answers, prompts, {}}, body);
}

std::string define_user_flash(std::istream& answers, std::ostream& prompts, const USER_FLASH_ASK_AGAIN& ask_again) {
    const CONVERSATION talk{answers, prompts, ask_again};
    const DWORD count = ask_count(talk).value_or(0);
    std::string text;
    for (DWORD i = 0; i < count; ++i) {
        std::string body;
        if (!ask_for_flash(talk, body)) {
            print(prompts, {NOT_A_DEFINITION});
            return {};
        }
        text += sealed_user_flash(body);
        print(prompts, {"Raw: ", text, "\n"});
    }
    if (count == 0) {
        return {};
    }
    const USER_FLASH_CODING encoded = encode_checked_user_flash(text);
    if (encoded.failure != nullptr) {
        print(prompts, {encoded.failure});
    } else {
        print(prompts, {"INI : ", encoded.text, "\n"});
    }
    return encoded.text;
}

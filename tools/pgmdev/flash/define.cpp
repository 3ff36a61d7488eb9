#include <fmt/core.h>

#include <algorithm>
#include <iostream>

#include "cfg.h"
#include "configuration/saving.h"
#include "flash/chip.h"
#include "flash/output.h"
#include "flash/verbs.h"
#include "pgmdev_user_flash.h"
#include "terminal/input.h"
#include "terminal/library_output.h"
#include "terminal/printable.h"
#include "terminal/quiet.h"
#include "terminal/screen.h"
#include "terminal/standard_error.h"

// The verbs that make the encoded text of a flash of one's own.

namespace {

constexpr const char* SAVE = "--save";

void tell(const std::string& text) {
    print_error("pgmdev: {}", text);
}

/// Keeps the text in the configuration, when that is asked for, and tells where. Null: it is not asked for.
JSON saved(const std::string& encoded, const ARGUMENTS& given) {
    if (!given.has(SAVE)) {
        return {};
    }
    const std::string key = PGMDEV_USER_FLASH::CONFIGURATION_KEY;
    const auto [place, passed_over] = save_setting(key, encoded);
    if (!is_quiet()) {
        if (!passed_over.empty()) {
            tell(fmt::format("warning: {}; your own configuration file has it instead", passed_over));
        }
        tell(fmt::format("{} is saved in {} ({})", key, place.path, place.tried.front()));
    }
    const std::string stronger = outweighed_by(key);
    if (!stronger.empty() && !is_quiet()) {
        tell(fmt::format("warning: {} outweighs what is saved", stronger));
    }
    return place.path;
}

void tell_assumptions(const std::vector<USER_CHIP>& chips) {
    for (const USER_CHIP& chip : chips) {
        for (const ASSUMED_MEMBER& each : chip.assumed) {
            tell(fmt::format("{}: {} is assumed, {}", chip.record.device_name, each.member, each.why));
        }
    }
    if (chips.size() > 1) {
        tell(fmt::format("of {} flash devices only the first one is used: {}", chips.size(),
                         chips.front().record.device_name));
    }
}

JSON chip_json(const USER_CHIP& chip) {
    JSON object = JSON::object();
    add_members(object, chip.record);
    JSON assumed = JSON::array();
    for (const ASSUMED_MEMBER& each : chip.assumed) {
        assumed.push_back({{"member", each.member}, {"why", each.why}});
    }
    object["assumed"] = assumed;
    return object;
}

/// Gives the text of the chips.
void give_chips(const std::vector<USER_CHIP>& chips, const ARGUMENTS& given, const COMMAND& command) {
    const std::string encoded = encoded_chips(chips);
    if (encoded.empty()) {
        throw USAGE_ERROR("these flash devices together are too much, or too much alike, for one text");
    }
    if (!is_quiet()) {
        tell_assumptions(chips);
    }
    const JSON path = saved(encoded, given);
    if (!command.json) {
        fmt::print("{}\n", encoded);
        return;
    }
    JSON flashes = JSON::array();
    for (const USER_CHIP& chip : chips) {
        flashes.push_back(chip_json(chip));
    }
    print_json({{"encoded", encoded}, {"flashes", flashes}, {"saved", path}});
}

bool is_dump_on_input(const CHIP_ENTRY& entry) {
    return gen_stricmp(entry.name, SFDP_FIELD) == 0 && entry.value == "-";
}

/// What is written behind the verb, and in the file that it names.
std::vector<CHIP_TEXT> given_chips(const ARGUMENTS& given, std::vector<FIELD_FAULT>& faults) {
    const std::vector<std::string>& arguments = given.texts("FIELD=VALUE");
    std::vector<std::string> assignments;
    std::vector<std::string> files;
    for (const std::string& argument : arguments) {
        (names_chip_file(argument) ? files : assignments).push_back(argument);
    }
    if (files.size() > 1) {
        throw USAGE_ERROR("expected one file: it may describe several flash devices");
    }
    CHIP_TEXT written = chip_of_arguments(assignments, faults);
    for (const char* field : {LIKE_FIELD, SFDP_FIELD, ID_FIELD}) {
        const std::string option = std::string("--") + field;
        if (given.has(option)) {
            written.entries.push_back({option, field, given.text(option)});
        }
    }
    if (files.empty()) {
        return {written};
    }
    if (files.front() == CHIP_ON_INPUT &&
        std::any_of(written.entries.begin(), written.entries.end(), is_dump_on_input)) {
        throw USAGE_ERROR(INPUT_HAS_A_CHIP);
    }
    std::vector<CHIP_TEXT> chips = chips_of_file(files.front().substr(1), faults);
    if (chips.empty() && !faults.empty()) {
        return chips;  // what is wrong with its lines says why it describes none
    }
    if (!written.entries.empty() && chips.size() != 1) {
        throw USAGE_ERROR("further fields go with a file that describes one flash");
    }
    for (const CHIP_ENTRY& entry : written.entries) {
        chips.front().entries.push_back(entry);
    }
    return chips;
}

/// Names an answer that is refused. On a terminal the question is put again; elsewhere the dialogue ends, as ever, and the
/// reason is told where the dialogue itself has none.
class REFUSALS {
public:
    explicit REFUSALS(std::ostream& prompts) : m_prompts(prompts) {}

    bool ask_again(const PGMDEV_USER_FLASH::REFUSED_ANSWER& refused) {
        if (std::cin.eof() && refused.answer.empty()) {
            return false;  // nobody has answered
        }
        const std::string question = refused.question.substr(0, refused.question.rfind(" : "));
        const std::string text = fmt::format(R"(the answer "{}" to "{}" is refused; accepted: {})", refused.answer,
                                             question, refused.accepted);
        if (input_is_terminal()) {
            m_prompts << printable(text) << '\n';
            return true;
        }
        if (refused.answer.find_first_of("@#;") != std::string::npos) {
            m_reason = text;
        }
        return false;
    }

    /// "": there is no more to say.
    const std::string& reason() const { return m_reason; }

private:
    std::ostream& m_prompts;
    std::string m_reason;
};

void hold_dialogue(const ARGUMENTS& given, COMMAND& command) {
    std::ostream& prompts = command.json ? std::cerr : answer_stream();
    std::cin.tie(&prompts);  // a question is shown before its answer is awaited
    REFUSALS refusals(prompts);
    const std::string encoded = PGMDEV_USER_FLASH::define(
        std::cin, prompts,
        [&refusals](const PGMDEV_USER_FLASH::REFUSED_ANSWER& refused) { return refusals.ask_again(refused); });
    if (encoded.empty()) {
        require_readable_input();  // a fault is no end
        throw USAGE_ERROR(!refusals.reason().empty() ? refusals.reason()
                          : std::cin.fail()          ? "the input ended before the last question was answered"
                                                     : "no flash was defined");
    }
    const std::vector<std::string> faults = PGMDEV_USER_FLASH::from_encoded(encoded).faults();
    const JSON path = faults.empty() ? saved(encoded, given) : JSON();
    if (command.json) {
        JSON answer{{"encoded", encoded}};
        if (given.has(SAVE)) {
            answer["saved"] = path;
        }
        print_json(answer);
    }
    for (const std::string& fault : faults) {
        tell("the description is refused: " + fault);
        command.result = EXIT_INTERNAL_ERROR;  // as for a refused table
    }
}

/// The flash devices of an encoded text, whoever signed it.
std::vector<USER_CHIP> chips_of_text(const std::string& text) {
    std::vector<USER_CHIP> chips;
    std::vector<FIELD_FAULT> faults;
    for (const PGMDEV_USER_FLASH& flash : PGMDEV_USER_FLASH::all_from_encoded(text)) {
        if (!flash.complete() || flash.record().device_name.empty()) {
            throw USAGE_ERROR("the description is refused: " + flash.faults().front());
        }
        for (const auto& [member, found, expected] : PGMDEV_USER_FLASH::implausible(flash.record())) {
            throw USAGE_ERROR(
                fmt::format("the description is refused: {} is {}, expected {}", member, found, expected));
        }
        chips.push_back({flash.record(), {}});
    }
    if (chips.size() > PGMDEV_USER_FLASH::MOST_FLASHES) {
        throw USAGE_ERROR("the description is refused: it has more than three flash devices");
    }
    return chips;
}

}  // namespace

void define_flash(const ARGUMENTS& given, COMMAND& command) {
    if (!given.has("FIELD=VALUE") && !given.has("--like") && !given.has("--sfdp") && !given.has("--id")) {
        hold_dialogue(given, command);
        return;
    }
    std::vector<FIELD_FAULT> faults;
    const std::vector<CHIP_TEXT> chips = given_chips(given, faults);
    give_chips(user_chips(chips, std::move(faults)), given, command);
}

void reseal_flash(const ARGUMENTS& given, COMMAND& command) {
    std::string text = given.text("TEXT");
    if (names_chip_file(text)) {
        std::vector<FIELD_FAULT> faults;
        const std::vector<CHIP_TEXT> chips = chips_of_file(text.substr(1), faults);
        give_chips(user_chips(chips, std::move(faults)), given, command);
        return;
    }
    if (!given.has("TEXT")) {
        text = cfg_get_value(PGMDEV_USER_FLASH::CONFIGURATION_KEY);
        if (text.empty()) {
            throw USAGE_ERROR(fmt::format("expected TEXT or @FILE: {} has no description either",
                                          PGMDEV_USER_FLASH::CONFIGURATION_KEY));
        }
    }
    give_chips(chips_of_text(text), given, command);
}

JSON define_schema() {
    std::vector<SCHEMA_MEMBER> members = record_members();
    members.push_back({"assumed", array_schema(object_schema({{"member", text_schema()}, {"why", text_schema()}}))});
    return object_schema({{"encoded", text_schema()},
                          {"flashes", array_schema(object_schema(members)), false},
                          {"saved", or_null(text_schema()), false}});
}

#include <fmt/core.h>

#include <algorithm>
#include <fstream>
#include <iostream>
#include <optional>
#include <utility>

#include "files/inspection.h"
#include "fio.h"
#include "flash/aliases.h"
#include "flash/chip_file.h"
#include "flash/identification.h"
#include "flash/identify_sfdp.h"
#include "flash/known_flash.h"
#include "flash/log.h"
#include "flash/log_words.h"
#include "flash/output.h"
#include "flash/verbs.h"
#include "gen.h"
#include "terminal/answer.h"
#include "terminal/failure.h"
#include "terminal/wrapped.h"
#include "utf_8_input.h"

namespace {

constexpr const char* BATCH = "-";

/// What a log tells, and where.
struct TOLD {
    LOG_FINDING taken;
    std::vector<LOG_FINDING> others;  ///< that tell something else
};

void count_doubt(const FLASH_IDENTIFICATION& device, COMMAND& command) {
    if (device.is_doubtful()) {
        command.result = std::max(command.result, EXIT_NOT_FOUND);
    }
}

/// One answer for each line, which tells the positions of a chain one after the other.
void identify_batch(bool silicon, COMMAND& command) {
    FLASH_IDENTIFIER identifier(1);
    DWORD count = 0;
    answer_each(BATCH, command, [&](const std::string& response) {
        const FLASH_IDENTIFICATION device = identifier.identify(0, FLASH_QUESTION::parse(response, silicon));
        count_doubt(device, command);
        const DWORD position = count++;
        ANSWER answer;
        answer.found = device.is_mapped();
        answer.content = identification_json(position, device, identifier, false);
        answer.print = [position, device, &identifier] { print_identification(position, device, identifier); };
        return answer;
    });
}

/// Three responses of one byte each are one response that a shell has taken apart.
std::string split_by_blanks(const std::vector<FLASH_IDENTIFICATION>& devices) {
    std::string joined;
    for (const FLASH_IDENTIFICATION& device : devices) {
        if (device.is_mapped() || device.question.silicon_id || device.question.bytes.count != 1) {
            return "";
        }
        joined += (joined.empty() ? "" : " ") + device.question.text;
    }
    return devices.size() < LEAST_IDENTIFICATION
               ? ""
               : fmt::format("these {} responses of one byte look like one response split by blanks: write \"{}\"",
                             devices.size(), joined);
}

JSON told_json(const TOLD& told) {
    JSON others = JSON::array();
    for (const LOG_FINDING& other : told.others) {
        others.push_back({{"line", other.line}, {"text", other.text}});
    }
    return {{"line", told.taken.line}, {"text", told.taken.text}, {"others", others}};
}

void print_told(const TOLD& told) {
    print_sentence(fmt::format("Line {}: {}", told.taken.line, told.taken.text));
    for (const LOG_FINDING& other : told.others) {
        print_labelled("", 2, fmt::format("line {} tells another one: {}", other.line, other.text));
    }
}

/// Answers with what was identified.
void give_chain(const std::vector<FLASH_IDENTIFICATION>& devices, FLASH_IDENTIFIER& identifier,
                const std::optional<TOLD>& told, COMMAND& command) {
    std::vector<std::string> query;
    JSON array = JSON::array();
    for (const FLASH_IDENTIFICATION& device : devices) {
        count_doubt(device, command);
        array.push_back(identification_json(static_cast<DWORD>(query.size()), device, identifier, true));
        query.push_back(device.question.text);
    }
    const std::optional<DWORD> longest = identifier.longest_program_utime();
    ANSWER answer;
    answer.found = std::all_of(devices.begin(), devices.end(), [](const auto& device) { return device.is_mapped(); });
    answer.content = {{"devices", array}, {"longest_program_utime", longest}};
    if (told) {
        answer.content["log"] = told_json(*told);
    }
    answer.missing = split_by_blanks(devices);
    if (!answer.missing.empty()) {
        answer.content["hint"] = answer.missing;
    }
    answer.print = [&] {
        if (told) {
            print_told(*told);
        }
        for (DWORD position = 0; position < devices.size(); ++position) {
            print_identification(position, devices[position], identifier);
        }
        if (longest) {
            fmt::print("Longest program time in the chain: {} us\n", *longest);
        }
    };
    give_answer(query, answer, command);
}

void identify_chain(const std::vector<FLASH_QUESTION>& questions, const std::optional<TOLD>& told, COMMAND& command) {
    FLASH_IDENTIFIER identifier(static_cast<DWORD>(questions.size()));
    std::vector<FLASH_IDENTIFICATION> devices;
    for (DWORD position = 0; position < questions.size(); ++position) {
        devices.push_back(identifier.identify(position, questions[position]));
    }
    give_chain(devices, identifier, told, command);
}

COMMAND_FAILURE unreadable_log(const std::string& file, const std::string& obstacle) {
    return COMMAND_FAILURE({FAILURE_CODE::FILE_UNREADABLE,
                            "the log cannot be read" + (obstacle.empty() ? "" : ": " + obstacle),
                            file,
                            {},
                            "name a file that exists and that you may read",
                            {}});
}

std::optional<std::vector<LOG_FINDING>> findings_in_file(const std::string& file) {
    std::ifstream log(fio_get_unc_full_path(FIO_PATH(file).fullpath()), std::ios::binary);
    auto findings = find_in_log(log);
    if (!log.is_open() || log.bad()) {
        throw unreadable_log(file, is_stream(file) ? "" : inspect_file(file, 0).obstacle);
    }
    return findings;
}

std::vector<LOG_FINDING> findings_of(const std::string& file) {
    auto findings = file == BATCH ? find_in_log(std::cin) : findings_in_file(file);
    if (file == BATCH) {
        require_readable_input();
    }
    if (!findings) {
        throw unreadable_log(file, MALFORMED_UTF_16);
    }
    return *std::move(findings);
}

/// Answers that nothing was found.
void give_nothing(const JSON& query, std::string missing, std::vector<std::string> candidates,
                  const std::optional<TOLD>& told, COMMAND& command) {
    ANSWER answer;
    answer.found = false;
    answer.content = {{"devices", JSON::array()}, {"longest_program_utime", nullptr}};
    if (told) {
        answer.content["log"] = told_json(*told);
        answer.print = [&told] { print_told(*told); };
    }
    answer.missing = std::move(missing);
    answer.candidates = std::move(candidates);
    give_answer(query, answer, command);
}

/// A log that tells names, and no response.
void identify_name(const TOLD& told, COMMAND& command) {
    FLASH_IDENTIFIER identifier(1);
    const std::vector<std::string>& names = told.taken.names;
    if (const auto device = identifier.identify_named(0, names)) {
        give_chain({*device}, identifier, told, command);
    } else {
        give_nothing(names, no_flash_named(names.front()), identifier.similar_names(names.front()), told, command);
    }
}

/// The first one that the database knows: other devices have identifications, too. Or else the first one.
const LOG_FINDING& most_telling(const std::vector<LOG_FINDING>& findings) {
    FLASH_IDENTIFIER identifier(1);
    const auto known = std::find_if(findings.begin(), findings.end(), [&identifier](const LOG_FINDING& finding) {
        return finding.names.empty()
                   ? identifier.identify(0, FLASH_QUESTION::parse(finding.response(), false)).is_mapped()
                   : identifier.identify_named(0, finding.names).has_value();
    });
    return known != findings.end() ? *known : findings.front();
}

void identify_log(const std::string& file, COMMAND& command) {
    const std::vector<LOG_FINDING> findings = findings_of(file);
    if (findings.empty()) {
        give_nothing(JSON::array(), "no line of the log tells the identification or the name of a flash", {},
                     std::nullopt, command);
        return;
    }
    TOLD told{most_telling(findings), {}};
    for (const LOG_FINDING& finding : findings) {
        const bool differs = finding.bytes != told.taken.bytes || finding.names != told.taken.names;
        if (differs && finding.kind != LOG_FINDING::KIND::DUMP) {  // a dump has other lines anyway
            told.others.push_back(finding);
        }
    }
    if (told.taken.names.empty()) {
        identify_chain({FLASH_QUESTION::parse(told.taken.response(), false)}, told, command);
    } else {
        identify_name(told, command);
    }
}

/// Takes "1=W25Q64JV" for one of the positions.
void map_by_hand(const std::string& assignment, std::vector<FLASH_QUESTION>& questions) {
    const auto trimmed = [](const std::string& text) { return gen_remove_leading_and_trailing_white_spaces(text); };
    const std::size_t sign = assignment.find('=');
    const std::string name = sign == std::string::npos ? "" : trimmed(assignment.substr(sign + 1));
    if (name.empty()) {
        throw USAGE_ERROR(fmt::format("\"{}\" maps no device: expected POSITION=NAME", assignment));
    }
    const DWORD position = parse_dword(trimmed(assignment.substr(0, sign)), "a device position");
    if (position >= questions.size()) {
        throw USAGE_ERROR(fmt::format("there is no device at position {}: the last is {}", position,
                                      static_cast<int>(questions.size()) - 1));
    }
    if (!questions[position].by_hand.empty()) {
        throw USAGE_ERROR(fmt::format("the device at position {} is mapped more than once", position));
    }
    questions[position].by_hand = name;
}

bool is_batch(const std::vector<std::string>& responses) {
    return responses.size() == 1 && responses.front() == BATCH;
}

/// Refuses options that do not go together.
void require_one_way(const ARGUMENTS& given, const std::vector<std::string>& responses) {
    const bool silicon = given.has("--silicon");
    const bool batch = is_batch(responses);
    if (given.has("--system") && (given.has("--log") || given.has("--sfdp") || given.has("--as") || silicon)) {
        throw USAGE_ERROR("--system goes with no other way to identify");
    }
    if (given.has("HEX") == given.has("--log") && !given.has("--system")) {
        throw USAGE_ERROR("expected one of HEX, --log and --system");
    }
    if (silicon && given.has("--log")) {
        throw USAGE_ERROR("--silicon goes with responses HEX");
    }
    if (!batch && std::find(responses.begin(), responses.end(), BATCH) != responses.end()) {
        throw USAGE_ERROR("- reads all responses from standard input: no other one stands beside it");
    }
    if (given.has("--as") && (batch || given.has("--log"))) {
        throw USAGE_ERROR("--as goes with the responses of a chain");
    }
    if (given.has("--sfdp") && (batch || responses.size() != 1)) {
        throw USAGE_ERROR("expected one response HEX with --sfdp");
    }
    if (given.text("--user") == CHIP_ON_INPUT &&
        (batch || given.text("--log") == BATCH || given.text("--sfdp") == BATCH)) {
        throw USAGE_ERROR(INPUT_HAS_A_CHIP);
    }
}

}  // namespace

void identify_flash(const ARGUMENTS& given, COMMAND& command) {
    const std::vector<std::string>& responses = given.texts("HEX");
    const bool silicon = given.has("--silicon");
    require_one_way(given, responses);
    if (given.has("--user")) {
        use_user_flash(given.text("--user"));
    }
    if (given.has("--system")) {
        identify_system(responses, command);
    } else if (given.has("--log")) {
        identify_log(given.text("--log"), command);
    } else if (is_batch(responses)) {
        identify_batch(silicon, command);
    } else {
        std::vector<FLASH_QUESTION> questions;
        questions.reserve(responses.size());
        for (const std::string& response : responses) {
            questions.push_back(FLASH_QUESTION::parse(response, silicon));
        }
        for (const std::string& assignment : given.texts("--as")) {
            map_by_hand(assignment, questions);
        }
        if (given.has("--sfdp")) {
            identify_with_sfdp(questions.front(), given.text("--sfdp"), command);
        } else {
            identify_chain(questions, std::nullopt, command);
        }
    }
}

JSON identify_schema() {
    const JSON line = object_schema({{"line", number_schema()}, {"text", text_schema()}});
    const JSON log =
        object_schema({{"line", number_schema()}, {"text", text_schema()}, {"others", array_schema(line)}});
    std::vector<SCHEMA_MEMBER> members = identification_members(true);
    for (SCHEMA_MEMBER& member : known_flash_members()) {
        members.push_back(std::move(member));
    }
    const JSON chain = object_schema({{"query", array_schema(text_schema())},
                                      {"found", flag_schema()},
                                      {"devices", array_schema(object_schema(members))},
                                      {"longest_program_utime", or_null(number_schema())},
                                      {"log", log, false},
                                      {"hint", text_schema(), false},
                                      {"candidates", array_schema(text_schema()), false}});
    return any_of(
        {chain, question_schema(identification_members(false),
                                {"position", "mapped", "index", "given", "telling", "by_hand", "sure", "missing_bytes",
                                 "ambiguities", "contradictions", "fitting", "oddity", "nearest", "admitted"})});
}

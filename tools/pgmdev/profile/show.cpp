#include "profile/show.h"

#include <fmt/core.h>

#include <algorithm>
#include <array>
#include <memory>
#include <utility>

#include "catalog/nearest_names.h"
#include "dstr.h"
#include "pgmdev_device_grammar_mgr.h"
#include "profile/look_up.h"
#include "profile/output.h"
#include "terminal/answer.h"
#include "terminal/input.h"

namespace {

/// One way of asking.
struct QUESTION {
    const char* option;
    const char* noun;
    const char* unknown;  ///< what is said of a name that does not name any
    const char* value_name;
    const char* description;
    FOUND_PROFILE (*look_up)(PROFILE_DATABASE& database, const std::string& name);
    bool (*is_known)(const std::string& name);
    std::vector<std::string> (*similar)(const std::string& name);  ///< known names that may have been meant
};

int family_number(const std::string& name) {
    return dstr_get_dev_family_enum_by_string(name.c_str());
}

int device_number(const std::string& name) {
    return dstr_get_dev_device_enum_by_string(name.c_str());
}

int part_number(const std::string& name) {
    return dstr_get_dev_part_enum_by_string(name.c_str());
}

DWORD record_index(const std::string& text) {
    return parse_dword(text, "the index of a record");
}

constexpr std::array QUESTIONS{
    QUESTION{"--family", "family", "no family is named", "NAME", "Family name, in any case; - reads one name per line",
             [](PROFILE_DATABASE& database, const std::string& name) {
                 return look_up_profile(database, PROFILE_KEY::FAMILY, family_number(name));
             },
             [](const std::string& name) { return family_number(name) != 0; }, nearest_families},
    QUESTION{"--device", "device", "no device is named", "NAME", "Device name, likewise",
             [](PROFILE_DATABASE& database, const std::string& name) {
                 return look_up_profile(database, PROFILE_KEY::DEVICE, device_number(name));
             },
             [](const std::string& name) { return device_number(name) != 0; }, nearest_devices},
    QUESTION{"--part", "part", "no part is named", "NAME", "Part name, likewise",
             [](PROFILE_DATABASE& database, const std::string& name) {
                 return look_up_profile(database, PROFILE_KEY::PART, part_number(name));
             },
             [](const std::string& name) { return part_number(name) != 0; }, nearest_parts},
    QUESTION{"--pcf", "pcf", "no programmer-file part is named", "NAME", "Programmer-file part name, likewise",
             look_up_profile_of_pcf,
             [](const std::string& name) {
                 // A copy, which the question converts to upper case.
                 std::string pcf = name;  // NOLINT(performance-unnecessary-copy-initialization)
                 return !PGMDEV_DEVICE_GRAMMAR_MGR::get_pcf_device(pcf).empty();
             },
             [](const std::string& name) { return nearest_names(name, {.programmer_part = true}); }},
    QUESTION{
        "--index", "record", "there is no record", "INDEX",
        "Index of a record, as profile list tells it; - reads one per line",
        [](PROFILE_DATABASE& database, const std::string& text) { return profile_at(database, record_index(text)); },
        [](const std::string&) { return false; }, [](const std::string&) { return std::vector<std::string>(); }},
};

ANSWER answer_to(const QUESTION& question, PROFILE_DATABASE& database, const std::string& name) {
    const auto profile = std::make_shared<const FOUND_PROFILE>(question.look_up(database, name));
    ANSWER answer;
    answer.found = profile->record != nullptr;
    if (!answer.found) {
        const bool is_known = question.is_known(name);
        answer.content = {{"index", nullptr}, {"rule", nullptr}, {question.noun, name}};
        answer.missing = is_known ? fmt::format("no profile governs {} {}", question.noun, name)
                                  : fmt::format("{} \"{}\"", question.unknown, name);
        answer.candidates = is_known ? std::vector<std::string>() : question.similar(name);
        return answer;
    }
    answer.content = {{"index", profile->index}, {"rule", profile->rule}};
    add_members(answer.content, *profile->record);
    answer.print = [&question, name, profile] {
        print_members(*profile->record, fmt::format("{} {}: record {}, keyed by {}, found {}", question.noun, name,
                                                    profile->index, key_text(*profile->record), rule_text(*profile)));
    };
    answer.is_block = true;
    return answer;
}

void show_profile(const ARGUMENTS& given, COMMAND& command) {
    const auto is_given = [&given](const QUESTION& question) { return given.has(question.option); };
    if (std::count_if(QUESTIONS.begin(), QUESTIONS.end(), is_given) != 1) {
        throw USAGE_ERROR("expected one of --family, --device and --part, or --pcf, or --index");
    }
    const QUESTION& question = *std::find_if(QUESTIONS.begin(), QUESTIONS.end(), is_given);
    PROFILE_DATABASE database;
    answer_each(given.text(question.option), command,
                [&](const std::string& name) { return answer_to(question, database, name); });
}

JSON shown_profile_schema() {
    std::vector<SCHEMA_MEMBER> content = profile_members();
    content.insert(content.begin(), {{"index", number_schema()}, {"rule", choice_schema(PROFILE_RULES)}});
    return question_schema(content, {"index", "rule"}, {{"record", text_schema(), false}});
}

}  // namespace

VERB profile_show_verb() {
    VERB verb("show", "The profile that governs a family, device, part or programmer-file name, and the rule behind it",
              "pgmdev profile show --family Kestrel", show_profile);
    for (const QUESTION& question : QUESTIONS) {
        verb.takes({question.option, question.description, ARGUMENT::OPTIONAL_TEXT, question.value_name});
    }
    return std::move(verb).answers(shown_profile_schema);
}

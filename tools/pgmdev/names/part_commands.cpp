#include <fmt/core.h>

#include "catalog/device_names.h"
#include "catalog/nearest_names.h"
#include "dev.h"
#include "names/part_from_pcf.h"
#include "names/part_info.h"
#include "names/part_list.h"
#include "nouns.h"
#include "pgmdev_mgr.h"
#include "stl.h"
#include "terminal/answer.h"
#include "terminal/json.h"
#include "terminal/quiet.h"
#include "terminal/schema.h"
#include "terminal/standard_error.h"

namespace {

/// One way of asking for a part.
struct QUESTION {
    const char* verb;
    const char* description;
    const char* argument;
    const char* not_found;
    const char* example;
    std::string (*ask)(std::string);
    NAME_KINDS known;        ///< whose names may have been meant
    bool of_device = false;  ///< the name is that of a device, whose parts may all be hidden
};

/// The first part that a name denotes, which may also be a further name by which the device library finds a part.
std::string complete(std::string name) {
    std::string part = PGMDEV_MGR::get_possible_full_name(name);
    if (part.empty()) {
        part = dstr_get_user_string(dstr_get_dev_part_enum_by_string(name.c_str()));
        stl_toupper(part);
    }
    return part;
}

/// The first hidden part of a device, for one that has no others.
std::string hidden_part_of(DEV_DEVICE_ENUM device) {
    std::vector<int> parts;
    const bool found = DEV_PART_MANAGER().filter_part_list(&parts, "ANY", dstr_get_user_string(device), "ANY", "ANY",
                                                           "ANY", false, false, true, "any");
    return found ? dstr_get_user_string(parts.front()) : std::string();
}

void print_hidden_part(const std::string& device, const std::string& part) {
    fmt::print("{}\n", part);
    if (!is_quiet()) {
        std::fflush(stdout);
        print_error("pgmdev: note: the device \"{}\" has hidden parts only", device);
    }
}

const QUESTION QUESTIONS[]{
    {"from-device",
     "The first part of a device of the device library",
     "Device name",
     "no part of a device",
     "pgmdev part from-device OSPREY-8",
     PGMDEV_MGR::get_part_name_from_dev,
     {.device = true},
     true},
    {"complete",
     "The first part that a full, package or programming name denotes, or an alias",
     "Name",
     "no part denoted by",
     "pgmdev part complete KES50",
     complete,
     {.part = true, .package_or_programming = true}},
};

ANSWER answer(const QUESTION& question, const std::string& name) {
    std::string part = ask_quietly([&] { return question.ask(name); });
    const DEV_DEVICE_ENUM device =
        question.of_device ? dstr_get_dev_device_enum_by_string(name.c_str()) : DEV_DEVICE_INVALID;
    const bool is_device = dstr_is_valid_dev_device_enum(device);
    const bool hidden = is_device && part.empty();
    if (hidden) {
        part = hidden_part_of(device);
    }
    ANSWER answer;
    answer.found = !part.empty();
    answer.content = {{"name", name}, {"part", answer.found ? JSON(part) : JSON()}};
    if (answer.found) {
        if (question.of_device) {
            answer.content["hidden"] = hidden;
        }
        answer.print = [name, part, hidden] { hidden ? print_hidden_part(name, part) : fmt::print("{}\n", part); };
    } else if (is_device) {
        answer.missing = fmt::format("the device \"{}\" has no part: only programmer files may name it", name);
    } else {
        answer.missing = fmt::format("there is {} \"{}\"", question.not_found, name);
        answer.candidates = nearest_names(name, question.known);
    }
    return answer;
}

JSON part_question_schema() {
    return question_schema({{"name", text_schema()}, {"part", text_schema()}}, {"name", "part"});
}

JSON device_question_schema() {
    return question_schema({{"name", text_schema()}, {"part", text_schema()}, {"hidden", flag_schema()}},
                           {"name", "part"});
}

}  // namespace

NOUN_CONTENTS part_contents() {
    std::vector<VERB> verbs = list_of(part_info_verb(), part_list_verb(), part_from_pcf_verb());
    for (const QUESTION& question : QUESTIONS) {
        const auto run = [&question](const ARGUMENTS& given, COMMAND& command) {
            answer_each(given.text("NAME"), command,
                        [&question](const std::string& name) { return answer(question, name); });
        };
        verbs.push_back(VERB(question.verb, question.description, question.example, run)
                            .takes({"NAME", fmt::format("{}, in any case; - reads one per line", question.argument)})
                            .answers(question.of_device ? device_question_schema : part_question_schema));
    }
    return {std::move(verbs)};
}

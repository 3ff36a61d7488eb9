#include <fmt/core.h>

#include "names/device_names.h"
#include "nouns.h"
#include "pgmdev_mgr.h"
#include "terminal/answer.h"
#include "terminal/did_you_mean.h"
#include "terminal/json.h"
#include "terminal/schema.h"

namespace {

/// One way of asking for a part.
struct QUESTION {
    const char* verb;
    const char* description;
    const char* argument;
    const char* not_found;
    const char* example;
    std::string (*ask)(std::string);
    const std::vector<std::string>& (*known_names)();
};

const std::vector<std::string>& completable_names() {
    static const std::vector<std::string> names = [] {
        std::vector<std::string> all = part_names();
        const std::vector<std::string>& more = package_and_programming_names();
        all.insert(all.end(), more.begin(), more.end());
        return all;
    }();
    return names;
}

/// Not every programmer-file part has a part: that takes a part whose full name is its programming name.
const std::vector<std::string>& programmer_part_names_of_parts() {
    static const std::vector<std::string> names = [] {
        std::vector<std::string> all = programmer_part_names();
        std::erase_if(all, [](const std::string& name) { return PGMDEV_MGR::get_part_name_from_pcf(name).empty(); });
        return all;
    }();
    return names;
}

const QUESTION QUESTIONS[]{
    {"from-device", "The first part of a device of the device library", "Device name", "no part of a device",
     "pgmdev part from-device OSPREY-8", PGMDEV_MGR::get_part_name_from_dev, device_names},
    {"from-pcf", "The first part with a programmer-file part name", "Programmer-file part name",
     "no part with the programmer-file part name", "pgmdev part from-pcf BLU_R35", PGMDEV_MGR::get_part_name_from_pcf,
     programmer_part_names_of_parts},
    {"complete", "The first part that a full, package or programming name denotes", "Name", "no part denoted by",
     "pgmdev part complete KES50", PGMDEV_MGR::get_possible_full_name, completable_names},
};

ANSWER answer(const QUESTION& question, const std::string& name) {
    const std::string part = ask_quietly([&] { return question.ask(name); });
    ANSWER answer;
    answer.found = !part.empty();
    answer.content = {{"name", name}, {"part", answer.found ? JSON(part) : JSON()}};
    if (answer.found) {
        answer.print = [part] { fmt::print("{}\n", part); };
    } else {
        answer.missing = fmt::format("there is {} \"{}\"", question.not_found, name);
        answer.candidates = nearest(name, question.known_names());
    }
    return answer;
}

JSON schema() {
    return question_schema({{"name", text_schema()}, {"part", text_schema()}}, {"name", "part"});
}

}  // namespace

NOUN part_noun() {
    std::vector<VERB> verbs;
    for (const QUESTION& question : QUESTIONS) {
        const auto run = [&question](const ARGUMENTS& given, COMMAND& command) {
            answer_each(given.text("NAME"), command,
                        [&question](const std::string& name) { return answer(question, name); });
        };
        verbs.push_back(VERB(question.verb, question.description, question.example, run)
                            .takes({"NAME", fmt::format("{}, in any case; - reads one per line", question.argument)})
                            .answers(schema));
    }
    return {"part", "Parts by less specific names", "pgmdev part complete KES50", verbs};
}

#include <fmt/core.h>

#include <algorithm>

#include "names/device_names.h"
#include "names/part_info.h"
#include "names/part_list.h"
#include "nouns.h"
#include "pgmdev_mgr.h"
#include "terminal/did_you_mean.h"
#include "terminal/input.h"
#include "terminal/json.h"

namespace {

/// One way of asking for a part.
struct QUESTION {
    const char* verb;
    const char* description;
    const char* argument;
    const char* not_found;
    const char* example;
    std::string (*ask)(std::string);
    std::vector<std::string> (*known_names)();
};

std::vector<std::string> completable_names() {
    std::vector<std::string> names = part_names();
    const std::vector<std::string> more = package_and_programming_names();
    names.insert(names.end(), more.begin(), more.end());
    return names;
}

/// Not every programmer-file part has a part: that takes a part whose full name is its programming name.
std::vector<std::string> programmer_part_names_of_parts() {
    std::vector<std::string> names = programmer_part_names();
    names.erase(
        std::remove_if(names.begin(), names.end(),
                       [](const std::string& name) { return PGMDEV_MGR::get_part_name_from_pcf(name).empty(); }),
        names.end());
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

void answer(const QUESTION& question, const std::string& argument, COMMAND& command) {
    for_each_item(argument, [&](const std::string& item, bool batch) {
        const std::string part = ask_quietly([&] { return question.ask(item); });
        if (part.empty()) {
            command.result = EXIT_NOT_FOUND;
            fmt::print(stderr, "pgmdev: there is {} \"{}\"{}\n", question.not_found, item,
                       batch ? "" : did_you_mean(nearest(item, question.known_names())));
        }
        JSON found;  // null: none
        if (!part.empty()) {
            found = part;
        }
        if (command.json && batch) {
            print_json_line({{"name", item}, {"part", found}});
        } else if (command.json && !part.empty()) {
            print_json({{"part", found}});
        } else if (!part.empty()) {
            fmt::print("{}\n", part);
        }
    });
}

}  // namespace

NOUN part_noun() {
    std::vector<VERB> verbs{part_info_verb(), part_list_verb()};
    for (const QUESTION& question : QUESTIONS) {
        const auto run = [&question](const ARGUMENTS& given, COMMAND& command) {
            answer(question, given.text("NAME"), command);
        };
        verbs.push_back(VERB(question.verb, question.description, question.example, run)
                            .takes({"NAME", fmt::format("{}, in any case; - reads one per line", question.argument)}));
    }
    return {"part", "Parts by less specific names", "pgmdev part complete KES50", verbs};
}

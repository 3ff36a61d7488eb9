#include <fmt/core.h>

#include <array>

#include "names/device_names.h"
#include "profile/output.h"
#include "profile/show.h"
#include "terminal/did_you_mean.h"
#include "terminal/input.h"

namespace {

/// One way of asking: by family, device or part.
struct QUESTION {
    const char* noun;
    int (*number)(const std::string& name);
    std::vector<std::string> (*names)();
};

constexpr std::array QUESTIONS{
    QUESTION{"family",
             [](const std::string& name) { return static_cast<int>(dstr_get_dev_family_enum_by_string(name.c_str())); },
             family_names},
    QUESTION{"device",
             [](const std::string& name) { return static_cast<int>(dstr_get_dev_device_enum_by_string(name.c_str())); },
             device_names},
    QUESTION{"part", [](const std::string& name) { return dstr_get_dev_part_enum_by_string(name.c_str()); },
             part_names},
};

void show_one(PROFILE_DATABASE& database, PROFILE_KEY key, const std::string& name, bool batch, COMMAND& command) {
    const QUESTION& question = QUESTIONS[static_cast<std::size_t>(key)];
    const int number = question.number(name);
    const FOUND_PROFILE answer = look_up_profile(database, key, number);
    if (answer.record == nullptr) {
        command.result = EXIT_NOT_FOUND;
        fmt::print(stderr, "pgmdev: {}\n",
                   number == 0 ? fmt::format("no {} is named \"{}\"{}", question.noun, name,
                                             did_you_mean(nearest(name, question.names())))
                               : fmt::format("no profile governs {} {}", question.noun, name));
        if (command.json && batch) {
            print_json_line({{"index", nullptr}, {"rule", nullptr}, {question.noun, name}});
        }
        return;
    }
    if (command.json) {
        JSON object{{"index", answer.index}, {"rule", answer.rule}};
        add_members(object, *answer.record);
        print_json_answer(object, batch);
        return;
    }
    print_members(*answer.record, fmt::format("{} {}: record {}, keyed by {}, found {}", question.noun, name,
                                              answer.index, key_text(*answer.record), rule_text(answer)));
}

}  // namespace

void show_profile(PROFILE_KEY key, const std::string& argument, COMMAND& command) {
    PROFILE_DATABASE database;
    for_each_item(argument, [&](const std::string& name, bool batch) {
        show_one(database, key, name, batch, command);
        if (batch && !command.json) {
            fmt::print("\n");
        }
    });
}

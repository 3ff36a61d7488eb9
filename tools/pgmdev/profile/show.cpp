#include <fmt/core.h>

#include <array>
#include <memory>

#include "dev.h"
#include "files/database.h"
#include "names/device_names.h"
#include "pgmdev_dev_info_manager_auto_export.h"
#include "profile/output.h"
#include "profile/show.h"
#include "terminal/did_you_mean.h"
#include "terminal/input.h"

namespace {

/// One way of asking: by family, device or part.
struct QUESTION {
    const char* noun;
    int (*number)(const std::string& name);
    PGMDEV_DEVICE_INFO* (*look_up)(PROFILE_DATABASE& database, int number);
    std::vector<std::string> (*names)();
};

constexpr std::array QUESTIONS{
    QUESTION{"family",
             [](const std::string& name) { return static_cast<int>(dstr_get_dev_family_enum_by_string(name.c_str())); },
             [](PROFILE_DATABASE& database, int number) {
                 return database.get_db_by_family(static_cast<DEV_FAMILY_ENUM>(number));
             },
             family_names},
    QUESTION{"device",
             [](const std::string& name) { return static_cast<int>(dstr_get_dev_device_enum_by_string(name.c_str())); },
             [](PROFILE_DATABASE& database, int number) {
                 return database.get_db_by_device(static_cast<DEV_DEVICE_ENUM>(number));
             },
             device_names},
    QUESTION{"part", [](const std::string& name) { return dstr_get_dev_part_enum_by_string(name.c_str()); },
             [](PROFILE_DATABASE& database, int number) { return database.get_db_by_part(number); }, part_names},
};

/// What was found for one name.
struct ANSWER {
    std::unique_ptr<PGMDEV_DEVICE_INFO> record;  ///< null: nothing
    DWORD index = INVALID_DWORD;
    std::string rule;
};

/// The rule that leads to a record follows from what the record is keyed by. A family's record that is not of the
/// family asked for stands in for a missing one.
std::string rule_of(const PGMDEV_DEVICE_INFO& record, DEV_FAMILY_ENUM family) {
    if (record.part != DEV_PART_INVALID) {
        return "part";
    }
    if (record.device != DEV_DEVICE_INVALID) {
        return "device";
    }
    if (!record.pcf.empty()) {
        return "pcf";
    }
    return record.family == family ? "family" : "generic";
}

std::string rule_text(const ANSWER& answer) {
    if (answer.rule == "pcf") {
        return "by its programmer-file name";
    }
    if (answer.rule == "generic") {
        return "as a stand-in, because its family has no record";
    }
    return "by its " + answer.rule;
}

DEV_FAMILY_ENUM family_of(PROFILE_KEY key, int number) {
    const DEV_PART_MANAGER parts;
    switch (key) {
        case PROFILE_KEY::FAMILY:
            return static_cast<DEV_FAMILY_ENUM>(number);
        case PROFILE_KEY::DEVICE:
            return parts.get_family_of(static_cast<DEV_DEVICE_ENUM>(number));
        default:
            return parts.get_family_of(parts.get_device_of(number));
    }
}

ANSWER look_up(PROFILE_DATABASE& database, PROFILE_KEY key, int number) {
    ANSWER answer;
    if (number == 0) {
        return answer;
    }
    answer.record.reset(QUESTIONS[static_cast<std::size_t>(key)].look_up(database, number));
    if (answer.record != nullptr) {
        answer.index = database.found_index();
        answer.rule = rule_of(*answer.record, family_of(key, number));
    }
    return answer;
}

void show_one(PROFILE_DATABASE& database, PROFILE_KEY key, const std::string& name, bool batch, COMMAND& command) {
    const QUESTION& question = QUESTIONS[static_cast<std::size_t>(key)];
    const int number = question.number(name);
    const ANSWER answer = look_up(database, key, number);
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

std::vector<std::string> family_names() {
    std::vector<std::string> names;
    for (int family = DEV_FAMILY_INVALID + 1; family < DEV_FAMILY_MAX; ++family) {
        names.push_back(pgmdev_family_name(static_cast<DEV_FAMILY_ENUM>(family)));
    }
    return names;
}

PROFILE_DATABASE::PROFILE_DATABASE()
    : PGMDEV_DEV_INFO_MANAGER(read_database(PROFILE_DATABASE_KIND, profile_database_place(),
                                            [] { return PGMDEV_DEV_INFO_MANAGER(false); })) {}

void show_profile(PROFILE_KEY key, const std::string& argument, COMMAND& command) {
    PROFILE_DATABASE database;
    for_each_item(argument, [&](const std::string& name, bool batch) {
        show_one(database, key, name, batch, command);
        if (batch && !command.json) {
            fmt::print("\n");
        }
    });
}

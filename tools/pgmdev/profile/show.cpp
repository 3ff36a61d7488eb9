#include <fmt/core.h>

#include <array>
#include <memory>

#include "dev.h"
#include "names/device_names.h"
#include "pgmdev_dev_info_manager_auto_export.h"
#include "profile/output.h"
#include "profile/show.h"
#include "terminal/answer.h"
#include "terminal/did_you_mean.h"

namespace {

/// One way of asking: by family, device or part.
struct QUESTION {
    const char* noun;
    int (*number)(const std::string& name);
    PGMDEV_DEVICE_INFO* (*look_up)(PROFILE_DATABASE& database, int number);
    const std::vector<std::string>& (*names)();
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
struct GOVERNING_PROFILE {
    std::unique_ptr<PGMDEV_DEVICE_INFO> record;
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

std::string rule_text(const GOVERNING_PROFILE& profile) {
    if (profile.rule == "pcf") {
        return "by its programmer-file name";
    }
    if (profile.rule == "generic") {
        return "as a stand-in, because its family has no record";
    }
    return "by its " + profile.rule;
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

std::unique_ptr<GOVERNING_PROFILE> look_up(PROFILE_DATABASE& database, PROFILE_KEY key, int number) {
    if (number == 0) {
        return nullptr;
    }
    auto profile = std::make_unique<GOVERNING_PROFILE>();
    profile->record.reset(QUESTIONS[static_cast<std::size_t>(key)].look_up(database, number));
    if (profile->record == nullptr) {
        return nullptr;
    }
    profile->index = database.found_index();
    profile->rule = rule_of(*profile->record, family_of(key, number));
    return profile;
}

ANSWER show_one(PROFILE_DATABASE& database, PROFILE_KEY key, const std::string& name) {
    const QUESTION& question = QUESTIONS[static_cast<std::size_t>(key)];
    const int number = question.number(name);
    const std::shared_ptr<const GOVERNING_PROFILE> profile = look_up(database, key, number);
    ANSWER answer;
    answer.found = profile != nullptr;
    if (!answer.found) {
        answer.content = {{"index", nullptr}, {"rule", nullptr}, {question.noun, name}};
        answer.missing = number == 0 ? fmt::format("no {} is named \"{}\"", question.noun, name)
                                     : fmt::format("no profile governs {} {}", question.noun, name);
        answer.candidates = number == 0 ? nearest(name, question.names()) : std::vector<std::string>();
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

}  // namespace

const std::vector<std::string>& family_names() {
    static const std::vector<std::string> names = [] {
        std::vector<std::string> all;
        for (int family = DEV_FAMILY_INVALID + 1; family < DEV_FAMILY_MAX; ++family) {
            all.push_back(pgmdev_family_name(static_cast<DEV_FAMILY_ENUM>(family)));
        }
        return all;
    }();
    return names;
}

void show_profile(PROFILE_KEY key, const std::string& argument, COMMAND& command) {
    PROFILE_DATABASE database;
    answer_each(argument, command, [&](const std::string& name) { return show_one(database, key, name); });
}

JSON show_profile_schema() {
    std::vector<SCHEMA_MEMBER> content = profile_members();
    content.insert(content.begin(), {{"index", number_schema()},
                                     {"rule", choice_schema({"family", "device", "part", "pcf", "generic"})}});
    return question_schema(content, {"index", "rule"});
}

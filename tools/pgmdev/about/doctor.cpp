#include "about/doctor.h"

#include <fmt/core.h>

#include <algorithm>
#include <string>
#include <vector>

#include "about/doctor_files.h"
#include "about/version.h"
#include "cfg.h"
#include "configuration/keys.h"
#include "files/environment.h"
#include "pgmdev_user_flash.h"
#include "terminal/printable.h"
#include "terminal/schema.h"
#include "terminal/screen.h"
#include "terminal/text_table.h"

namespace {

/// A directory that files are looked for in.
struct DIRECTORY {
    const char* name;
    PLACE place;
};

/// A configuration key that has a value.
struct SWITCH {
    std::string key;
    std::string value;
};

struct DIAGNOSIS {
    std::vector<DIRECTORY> directories;
    std::vector<FILE_FINDING> files;
    std::vector<SWITCH> switches;
    std::string user_flash;                ///< the description of the user's own flash; "": none
    std::vector<std::string> user_faults;  ///< why it is not taken
    std::vector<std::string> problems;     ///< everything that is wrong, a sentence each
};

std::vector<SWITCH> switches_in_force() {
    std::vector<SWITCH> found;
    for (const CONFIGURATION_KEY& key : known_keys(true).keys) {
        const std::string value = key.environment_only ? environment_text(key.name) : cfg_get_value(key.name);
        if (!value.empty()) {
            found.push_back({key.name, value});
        }
    }
    return found;
}

DIAGNOSIS examine() {
    DIAGNOSIS all;
    all.directories = {{"installation", installation_place()},
                       {"device databases", database_directory_place()},
                       {"module", module_place()},
                       {"outbox", outbox_place()}};
    all.files = find_files();
    all.switches = switches_in_force();
    all.user_flash = cfg_get_value(PGMDEV_USER_FLASH::CONFIGURATION_KEY);
    if (!all.user_flash.empty()) {
        all.user_faults = PGMDEV_USER_FLASH::from_encoded(all.user_flash).faults();
    }
    for (const FILE_FINDING& file : all.files) {
        if (file.wrong) {
            all.problems.push_back(
                fmt::format("{} {}: {}", file.name, file.place.path, file.remark.empty() ? file.state : file.remark));
        }
    }
    for (const std::string& fault : all.user_faults) {
        all.problems.push_back("the user's own flash is not taken: " + fault);
    }
    return all;
}

JSON to_json(const DIAGNOSIS& all) {
    JSON directories = JSON::array();
    for (const DIRECTORY& directory : all.directories) {
        directories.push_back(
            {{"name", directory.name}, {"path", directory.place.path}, {"origin", directory.place.tried}});
    }
    JSON files = JSON::array();
    for (const FILE_FINDING& file : all.files) {
        JSON object{{"name", file.name},   {"path", file.place.path}, {"origin", file.place.tried},
                    {"state", file.state}, {"wrong", file.wrong},     {"remark", file.remark}};
        object.append(file.facts);
        files.push_back(object);
    }
    JSON switches = JSON::array();
    for (const SWITCH& each : all.switches) {
        switches.push_back({{"key", each.key}, {"value", each.value}});
    }
    const bool present = !all.user_flash.empty();
    const JSON user_flash{
        {"present", present}, {"taken", present && all.user_faults.empty()}, {"faults", all.user_faults}};
    return {{"healthy", all.problems.empty()},
            {"versions", version_json()},
            {"directories", directories},
            {"files", files},
            {"switches", switches},
            {"user_flash", user_flash},
            {"problems", all.problems}};
}

JSON diagnosis_schema() {
    const JSON texts = array_schema(text_schema());
    const std::vector<SCHEMA_MEMBER> place{{"name", text_schema()}, {"path", text_schema()}, {"origin", texts}};
    std::vector<SCHEMA_MEMBER> file = place;
    file.insert(file.end(), {{"state", text_schema()},
                             {"wrong", flag_schema()},
                             {"remark", text_schema()},
                             {"size", number_schema(), false},
                             {"magic", text_schema(), false},
                             {"stamp", text_schema(), false},
                             {"records", number_schema(), false}});
    const JSON setting = object_schema({{"key", text_schema()}, {"value", text_schema()}});
    const JSON user_flash = object_schema({{"present", flag_schema()}, {"taken", flag_schema()}, {"faults", texts}});
    return object_schema({{"healthy", flag_schema()},
                          {"versions", version_schema()},
                          {"directories", array_schema(object_schema(place))},
                          {"files", array_schema(object_schema(file))},
                          {"switches", array_schema(setting)},
                          {"user_flash", user_flash},
                          {"problems", texts}});
}

void print_heading(const char* text) {
    fmt::print("\n{}\n", in_bold(text));
}

void print_place(const char* name, const PLACE& place) {
    fmt::print("  {:<20}  {}\n", name, printable(place.path));
    for (const std::string& origin : place.tried) {
        fmt::print("  {:<20}    {}\n", "", printable(origin));
    }
}

void print(const DIAGNOSIS& all) {
    print_version();
    print_heading("Directories");
    for (const DIRECTORY& directory : all.directories) {
        print_place(directory.name, directory.place);
    }
    print_heading("Files");
    for (const FILE_FINDING& file : all.files) {
        print_place(file.name, file.place);
        const std::string state = file.state + (file.remark.empty() ? "" : ": " + file.remark);
        fmt::print("  {:<20}    {}\n", "", file.wrong ? in_bold(printable(state)) : printable(state));
    }
    print_heading("Settings in force");
    for (const SWITCH& each : all.switches) {
        fmt::print("  {} = {}\n", printable(each.key), printable(each.value));
    }
    fmt::print("{}", all.switches.empty() ? "  none\n" : "");
    print_heading("The user's own flash");
    fmt::print("  {}\n", all.user_flash.empty()    ? "none is described"
                         : all.user_faults.empty() ? "taken as record 0"
                                                   : "not taken");
    for (const std::string& fault : all.user_faults) {
        fmt::print("  {}\n", printable(fault));
    }
    print_heading(all.problems.empty() ? "Nothing is wrong" : "Something is wrong");
    for (const std::string& problem : all.problems) {
        fmt::print("  {}\n", printable(problem));
    }
}

void run_doctor(const ARGUMENTS&, COMMAND& command) {
    const DIAGNOSIS all = examine();
    if (!all.problems.empty()) {
        command.result = EXIT_NOT_FOUND;
    }
    if (command.json) {
        print_json(to_json(all));
    } else {
        print(all);
    }
}

}  // namespace

VERB doctor_verb() {
    return VERB("doctor", "What is running with which files and settings, and what is wrong with them", "pgmdev doctor",
                run_doctor)
        .needs_no_settings()
        .tells("Exit code 1: something is wrong.\n")
        .answers(diagnosis_schema);
}

#include <fmt/core.h>

#include <algorithm>
#include <utility>
#include <variant>
#include <vector>

#include "names/device_names.h"
#include "nouns.h"
#include "pgmdev_device_grammar_mgr.h"
#include "pgmdev_mgr.h"
#include "terminal/answer.h"
#include "terminal/did_you_mean.h"
#include "terminal/json.h"
#include "terminal/schema.h"

namespace {

using GRAMMAR = PGMDEV_DEVICE_GRAMMAR_MGR;

/// One spelling of a name, or a remark on its spellings.
struct SPELLING {
    const char* key;
    const char* label;
    std::variant<std::string, bool> value;
};

/// All spellings of a name. A package name is its own package name, and a programming name its own programming name;
/// "" stands for what a name has not.
std::vector<SPELLING> spellings_of(std::string name) {
    std::string package_name = GRAMMAR::get_package_name(name, true);  // trims the name, converts it to upper case
    if (package_name.empty() && !GRAMMAR::get_pgm_name(name, true, true).empty()) {
        package_name = name;
    }
    std::string pgm_name = GRAMMAR::get_pgm_name(name, false, true);
    if (pgm_name.empty() && !GRAMMAR::get_pgm_part_pcf(name).empty()) {
        pgm_name = name;
    }
    std::string pgm_part_pcf;
    std::string pgm_family_pcf;
    GRAMMAR::get_pgm_pcfs(name, pgm_part_pcf, pgm_family_pcf);
    std::string dev_part_pcf;
    std::string dev_family_pcf;
    GRAMMAR::get_dev_pcfs(name, dev_part_pcf, dev_family_pcf);
    std::string family = GRAMMAR::get_family(name);
    if (family.empty()) {
        family = GRAMMAR::get_family(pgm_name);
    }
    return {{"name", "name", name},
            {"package_name", "package name", std::move(package_name)},
            {"pgm_name", "programming name", std::move(pgm_name)},
            {"pgm_part_pcf", "programmer-file part", std::move(pgm_part_pcf)},
            {"pgm_family_pcf", "programmer-file family", std::move(pgm_family_pcf)},
            {"dev_part_pcf", "programmer-file part of the device", std::move(dev_part_pcf)},
            {"dev_family_pcf", "programmer-file family of the device", std::move(dev_family_pcf)},
            {"pcf_family_pcf", "programmer-file family of the family", GRAMMAR::get_pcf_family_pcf(name)},
            {"family", "family", std::move(family)},
            {"pcf_device", "device of the programmer-file part", GRAMMAR::get_pcf_device(name)},
            {"use_full_name", "full name serves for all", GRAMMAR::use_full_name(name)},
            {"use_package_name", "package name serves for programming", GRAMMAR::use_package_name(name)},
            {"possible_full_name", "first full name",
             ask_quietly([&name] { return PGMDEV_MGR::get_possible_full_name(name); })}};
}

/// Whether anything is known of the name besides the name itself.
bool is_known(const std::vector<SPELLING>& spellings) {
    return std::any_of(spellings.begin() + 1, spellings.end(), [](const SPELLING& spelling) {
        const auto* text = std::get_if<std::string>(&spelling.value);
        return text != nullptr && !text->empty();
    });
}

JSON to_json(const std::vector<SPELLING>& spellings) {
    JSON object;
    for (const SPELLING& spelling : spellings) {
        std::visit([&](const auto& value) { object[spelling.key] = value; }, spelling.value);
    }
    return object;
}

void print_spellings(const std::vector<SPELLING>& spellings) {
    for (const SPELLING& spelling : spellings) {
        const auto* flag = std::get_if<bool>(&spelling.value);
        const std::string text = flag == nullptr ? std::get<std::string>(spelling.value) : *flag ? "yes" : "no";
        if (!text.empty()) {
            fmt::print("{:<37} {}\n", spelling.label, text);
        }
    }
}

const std::vector<std::string>& all_names() {
    static const std::vector<std::string> names = [] {
        std::vector<std::string> all = part_names();
        for (const auto& more : {package_and_programming_names(), programmer_part_names(), device_names()}) {
            all.insert(all.end(), more.begin(), more.end());
        }
        return all;
    }();
    return names;
}

ANSWER show_one(const std::string& name) {
    const std::vector<SPELLING> spellings = spellings_of(name);
    ANSWER answer;
    answer.found = is_known(spellings);
    answer.content = to_json(spellings);
    if (answer.found) {
        answer.print = [spellings] { print_spellings(spellings); };
        answer.is_block = true;
    } else {
        answer.missing = fmt::format("no device is named \"{}\"", name);
        answer.candidates = nearest(name, all_names());
    }
    return answer;
}

void show(const ARGUMENTS& given, COMMAND& command) {
    answer_each(given.text("NAME"), command, show_one);
}

JSON schema() {
    std::vector<SCHEMA_MEMBER> content;
    std::vector<std::string> keys;
    for (const SPELLING& spelling : spellings_of("")) {
        const bool is_text = std::holds_alternative<std::string>(spelling.value);
        content.push_back({spelling.key, is_text ? text_schema() : flag_schema()});
        keys.emplace_back(spelling.key);
    }
    return question_schema(content, keys);
}

}  // namespace

NOUN name_noun() {
    const VERB verb =
        VERB("show", "Every spelling of a name", "pgmdev --json name show KES50C6", show)
            .takes({"NAME",
                    "Full, package, programming, programmer-file or device name, in any case; - reads one per line"})
            .answers(schema);
    return {"name", "The spellings of a device's name", "pgmdev name show KES50C6", {verb}};
}

#include <fmt/format.h>

#include <array>
#include <memory>
#include <optional>
#include <string_view>
#include <utility>

#include "command.h"
#include "device_names.h"
#include "input.h"
#include "pgmdev_device_grammar_mgr.h"
#include "pgmdev_mgr.h"
#include "pgmdev_part_index.h"

namespace {

using GRAMMAR = PGMDEV_DEVICE_GRAMMAR_MGR;

/// All spellings of a name. A package name is its own package name, and a programming name its own programming name;
/// "" stands for what a name has not.
JSON spellings_of(std::string name, const std::function<std::string(const std::string&)>& full_name) {
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
    return {{"name", name},
            {"package_name", std::move(package_name)},
            {"pgm_name", std::move(pgm_name)},
            {"pgm_part_pcf", std::move(pgm_part_pcf)},
            {"pgm_family_pcf", std::move(pgm_family_pcf)},
            {"dev_part_pcf", std::move(dev_part_pcf)},
            {"dev_family_pcf", std::move(dev_family_pcf)},
            {"pcf_family_pcf", GRAMMAR::get_pcf_family_pcf(name)},
            {"family", std::move(family)},
            {"pcf_device", GRAMMAR::get_pcf_device(name)},
            {"use_full_name", GRAMMAR::use_full_name(name)},
            {"use_package_name", GRAMMAR::use_package_name(name)},
            {"possible_full_name", full_name(name)}};
}

bool is_known(const JSON& spellings) {
    for (const auto& [key, value] : spellings.items()) {
        if (key != "name" && value.is_string() && !value.get_ref<const std::string&>().empty()) {
            return true;
        }
    }
    return false;
}

void print_spellings(const JSON& spellings) {
    constexpr std::array<std::pair<const char*, const char*>, 13> LABELS{
        {{"name", "name"},
         {"package_name", "package name"},
         {"pgm_name", "programming name"},
         {"pgm_part_pcf", "programmer-file part"},
         {"pgm_family_pcf", "programmer-file family"},
         {"dev_part_pcf", "programmer-file part of the device"},
         {"dev_family_pcf", "programmer-file family of the device"},
         {"pcf_family_pcf", "programmer-file family of the family"},
         {"family", "family"},
         {"pcf_device", "device of the programmer-file part"},
         {"use_full_name", "full name serves for all"},
         {"use_package_name", "package name serves for programming"},
         {"possible_full_name", "first full name"}}};
    for (const auto& [key, label] : LABELS) {
        const JSON& value = spellings.at(key);
        if (value.is_boolean()) {
            fmt::print("{:<37} {}\n", label, value.get<bool>() ? "yes" : "no");
        } else if (const auto& text = value.get_ref<const std::string&>(); !text.empty()) {
            fmt::print("{:<37} {}\n", label, text);
        }
    }
}

std::string similar_names(const std::string& name) {
    std::vector<std::string> names = part_names();
    for (const auto& more : {package_and_programming_names(), programmer_part_names(), device_names()}) {
        names.insert(names.end(), more.begin(), more.end());
    }
    return did_you_mean(name, std::move(names));
}

void show(const std::string& argument, COMMAND& command) {
    std::optional<PGMDEV_PART_INDEX> index;  // made for batches only: one name is found sooner without
    for_each_item(argument, [&](const std::string& item, bool batch) {
        if (batch && !index) {
            index.emplace();
        }
        const JSON spellings = spellings_of(item, [&](const std::string& name) {
            return index ? index->get_possible_full_name(name)
                         : ask_quietly([&name] { return PGMDEV_MGR::get_possible_full_name(name); });
        });
        const bool known = is_known(spellings);
        if (!known) {
            command.result = EXIT_NOT_FOUND;
            fmt::print(stderr, "pgmdev: no device is named \"{}\"{}\n", item, batch ? "" : similar_names(item));
        }
        if (command.json && (known || batch)) {
            print_json_answer(spellings, batch);
        } else if (known) {
            print_spellings(spellings);
            fmt::print("{}", batch ? "\n" : "");
        }
    });
}

}  // namespace

void add_name_commands(CLI::App& app, COMMAND& command) {
    const auto name = std::make_shared<std::string>();  // lives as long as the callback that reads it
    CLI::App* noun = app.add_subcommand("name", "The spellings of a device's name");
    noun->require_subcommand(1);
    noun->footer("Example: pgmdev name show OSP8U256C8");

    CLI::App* verb = noun->add_subcommand("show", "Every spelling of a name");
    verb->add_option("NAME", *name,
                     "Full, package, programming, programmer-file or device name, in any case; - reads one per line")
        ->required();
    verb->footer("Example: pgmdev --json name show OSP8U256C8");
    verb->callback([name, &command] { show(*name, command); });
}

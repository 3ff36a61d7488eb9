#include <fmt/format.h>

#include <memory>

#include "names/device_names.h"
#include "pgm_common.h"
#include "pgmdev_mgr.h"
#include "terminal/command.h"
#include "terminal/input.h"
#include "terminal/text_table.h"

namespace {

/// The types as they are called on the command line, by value.
constexpr std::array<const char*, PGM_ENUM_TYPE_MAX> TYPES{"block", "sector", "option-bit", "sof-setting"};

PGM_ENUM_TYPE parse_type(const std::string& text) {
    for (std::size_t i = 0; i < TYPES.size(); ++i) {
        if (text == TYPES[i]) {
            return static_cast<PGM_ENUM_TYPE>(i);
        }
    }
    throw USAGE_ERROR(fmt::format("\"{}\" is no enumeration: expected {}", text, fmt::join(TYPES, ", ")));
}

DWORD parse_value(const std::string& text) {
    bool valid = false;
    const DWORD value = PGM_COMMON::convert_string_to_dword(text, true, &valid, nullptr, true);
    if (!valid) {
        throw USAGE_ERROR(fmt::format("\"{}\" is no value: expected a number of 32 bits", text));
    }
    return value;
}

std::vector<std::string> names_of(PGM_ENUM_TYPE type) {
    std::vector<std::string> names{""};  // the value 0 has none
    for (std::string name; PGMDEV_MGR::pgm_check_type_enum_supported(type, static_cast<DWORD>(names.size()), &name);) {
        names.push_back(name);
    }
    return names;
}

void show_name(const std::string& type_text, const std::string& argument, COMMAND& command) {
    const PGM_ENUM_TYPE type = parse_type(type_text);
    for_each_item(argument, [&](const std::string& item, bool batch) {
        const DWORD value = parse_value(item);
        std::string name;
        const bool found = PGMDEV_MGR::pgm_check_type_enum_supported(type, value, &name);
        if (!found) {
            command.result = EXIT_NOT_FOUND;
            fmt::print(stderr, "pgmdev: {} has no name for the value {}\n", type_text, value);
        }
        if (command.json && (found || batch)) {
            print_json_answer({{"value", value}, {"name", found ? JSON(name) : JSON()}}, batch);
        } else if (found) {
            fmt::print("{}\n", name);
        }
    });
}

void show_value(const std::string& type_text, const std::string& argument, COMMAND& command) {
    const PGM_ENUM_TYPE type = parse_type(type_text);
    for_each_item(argument, [&](const std::string& item, bool batch) {
        DWORD value = 0;
        const bool found = PGMDEV_MGR::pgm_check_type_name_supported(type, item, &value);
        if (!found) {
            command.result = EXIT_NOT_FOUND;
            fmt::print(stderr, "pgmdev: {} has no value named \"{}\"{}\n", type_text, item,
                       batch ? "" : did_you_mean(item, names_of(type)));
        }
        if (command.json && (found || batch)) {
            print_json_answer({{"value", found ? JSON(value) : JSON()}, {"name", item}}, batch);
        } else if (found) {
            fmt::print("{}\n", value);
        }
    });
}

void list(const std::string& type_text, const COMMAND& command) {
    const std::vector<std::string> names = names_of(parse_type(type_text));
    JSON array = JSON::array();
    TEXT_TABLE table({"value", "name"});
    for (std::size_t value = 1; value < names.size(); ++value) {
        array.push_back({{"value", value}, {"name", names[value]}});
        table.add({std::to_string(value), names[value]});
    }
    if (command.json) {
        print_json(array);
    } else {
        table.print();
    }
}

struct ENUM_OPTIONS {
    std::string type;
    std::string item;
};

}  // namespace

void add_enum_commands(CLI::App& app, COMMAND& command) {
    const auto options = std::make_shared<ENUM_OPTIONS>();  // lives as long as the callbacks that read it
    CLI::App* noun = app.add_subcommand("enum", "Names and values of the programmer's enumerations");
    noun->require_subcommand(1);
    noun->footer("Example: pgmdev enum list sector");
    const auto add_verb = [&](const char* name, const char* description, const char* example) {
        CLI::App* verb = noun->add_subcommand(name, description);
        verb->add_option("TYPE", options->type, fmt::format("Enumeration: {}", fmt::join(TYPES, ", ")))->required();
        verb->footer(fmt::format("Example: {}", example));
        return verb;
    };

    CLI::App* verb = add_verb("name", "The name of a value", "pgmdev enum name option-bit 21");
    verb->add_option("VALUE", options->item, "Value, decimal or 0x...; - reads one per line")->required();
    verb->callback([options, &command] { show_name(options->type, options->item, command); });

    verb = add_verb("value", "The value of a name", "pgmdev enum value option-bit AES_KEYS");
    verb->add_option("NAME", options->item, "Name, in any case; - reads one per line")->required();
    verb->callback([options, &command] { show_value(options->type, options->item, command); });

    verb = add_verb("list", "All values and their names", "pgmdev enum list sector");
    verb->callback([options, &command] { list(options->type, command); });
}

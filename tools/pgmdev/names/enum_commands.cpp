#include <fmt/core.h>

#include <algorithm>
#include <array>

#include "names/device_names.h"
#include "names/enum_commands.h"
#include "nouns.h"
#include "pgmdev_mgr.h"
#include "terminal/did_you_mean.h"
#include "terminal/input.h"
#include "terminal/json.h"
#include "terminal/text_table.h"

namespace {

/// The types as they are called on the command line, by value.
constexpr std::array<const char*, PGM_ENUM_TYPE_MAX> TYPES{"block", "sector", "option-bit", "sof-setting"};

std::string type_list() {
    std::string text;
    for (const char* type : TYPES) {
        text += (text.empty() ? "" : ", ") + std::string(type);
    }
    return text;
}

PGM_ENUM_TYPE parse_type(const std::string& text) {
    for (std::size_t i = 0; i < TYPES.size(); ++i) {
        if (text == TYPES[i]) {
            return static_cast<PGM_ENUM_TYPE>(i);
        }
    }
    throw USAGE_ERROR(fmt::format("\"{}\" is not an enumeration: expected {}{}", text, type_list(),
                                  did_you_mean(nearest(text, {TYPES.begin(), TYPES.end()}))));
}

std::vector<std::string> names_of(PGM_ENUM_TYPE type) {
    std::vector<std::string> names{""};  // the value 0 has none
    for (std::string name; PGMDEV_MGR::pgm_check_type_enum_supported(type, static_cast<DWORD>(names.size()), &name);) {
        names.push_back(name);
    }
    return names;
}

void show_enumerator_name(const ARGUMENTS& given, COMMAND& command) {
    const std::string& type_text = given.text("TYPE");
    const PGM_ENUM_TYPE type = parse_type(type_text);
    for_each_item(given.text("VALUE"), [&](const std::string& item, bool batch) {
        const DWORD value = parse_dword(item, "a value");
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

void show_enumerator_value(const ARGUMENTS& given, COMMAND& command) {
    const std::string& type_text = given.text("TYPE");
    const PGM_ENUM_TYPE type = parse_type(type_text);
    for_each_item(given.text("NAME"), [&](const std::string& item, bool batch) {
        DWORD value = 0;
        const bool found = PGMDEV_MGR::pgm_check_type_name_supported(type, item, &value);
        if (!found) {
            command.result = EXIT_NOT_FOUND;
            fmt::print(stderr, "pgmdev: {} has no value named \"{}\"{}\n", type_text, item,
                       batch ? "" : did_you_mean(nearest(item, names_of(type))));
        }
        if (command.json && (found || batch)) {
            print_json_answer({{"value", found ? JSON(value) : JSON()}, {"name", item}}, batch);
        } else if (found) {
            fmt::print("{}\n", value);
        }
    });
}

void list(const ARGUMENTS& given, const COMMAND& command) {
    const std::vector<std::string> names = names_of(parse_type(given.text("TYPE")));
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

}  // namespace

std::vector<std::string> enumeration_names() {
    return {TYPES.begin(), TYPES.end()};
}

std::vector<std::string> enumerator_names(const std::string& enumeration) {
    const bool known = std::find(TYPES.begin(), TYPES.end(), enumeration) != TYPES.end();
    return known ? names_of(parse_type(enumeration)) : std::vector<std::string>();
}

NOUN enum_noun() {
    const ARGUMENT type{"TYPE", "Enumeration: " + type_list()};
    const std::vector<VERB> verbs{
        VERB("name", "The name of a value", "pgmdev enum name option-bit 21", show_enumerator_name)
            .takes(type)
            .takes({"VALUE", "Value, decimal or 0x...; - reads one per line"}),
        VERB("value", "The value of a name", "pgmdev enum value option-bit AES_KEYS", show_enumerator_value)
            .takes(type)
            .takes({"NAME", "Name, in any case; - reads one per line"}),
        VERB("list", "All values and their names", "pgmdev enum list sector", list).takes(type),
    };
    return {"enum", "Names and values of the programmer's enumerations", "pgmdev enum list sector", verbs};
}

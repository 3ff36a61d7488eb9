#include <fmt/core.h>

#include <algorithm>
#include <array>

#include "catalog/device_names.h"
#include "gen.h"
#include "names/enum_commands.h"
#include "nouns.h"
#include "pgmdev_mgr.h"
#include "terminal/answer.h"
#include "terminal/did_you_mean.h"
#include "terminal/input.h"
#include "terminal/json.h"
#include "terminal/listing.h"
#include "terminal/schema.h"
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
    const std::string name = gen_remove_leading_and_trailing_white_spaces(text);
    for (std::size_t i = 0; i < TYPES.size(); ++i) {
        if (gen_stricmp(name, TYPES[i]) == 0) {
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
    answer_each(given.text("VALUE"), command, [&](const std::string& item) {
        const DWORD value = parse_dword(item, "a value");
        std::string name;
        ANSWER answer;
        answer.found = PGMDEV_MGR::pgm_check_type_enum_supported(type, value, &name);
        answer.content = {{"value", value}, {"name", answer.found ? JSON(name) : JSON()}};
        if (answer.found) {
            answer.print = [name] { fmt::print("{}\n", name); };
        } else {
            answer.missing = fmt::format("{} has no name for the value {}", type_text, value);
        }
        return answer;
    });
}

void show_enumerator_value(const ARGUMENTS& given, COMMAND& command) {
    const std::string& type_text = given.text("TYPE");
    const PGM_ENUM_TYPE type = parse_type(type_text);
    const std::vector<std::string> names = names_of(type);
    answer_each(given.text("NAME"), command, [&](const std::string& item) {
        DWORD value = 0;
        ANSWER answer;
        answer.found = PGMDEV_MGR::pgm_check_type_name_supported(type, item, &value);
        answer.content = {{"value", answer.found ? JSON(value) : JSON()}, {"name", item}};
        if (answer.found) {
            answer.print = [value] { fmt::print("{}\n", value); };
        } else {
            answer.missing = fmt::format("{} has no value named \"{}\"", type_text, item);
            answer.candidates = nearest(item, names);
        }
        return answer;
    });
}

const std::vector<SCHEMA_MEMBER> MEMBERS{{"value", number_schema()}, {"name", text_schema()}};

JSON question() {
    return question_schema(MEMBERS, {"value", "name"});
}

JSON row() {
    return object_schema(MEMBERS);
}

void list(const ARGUMENTS& given, const COMMAND& command) {
    const std::vector<std::string> names = names_of(parse_type(given.text("TYPE")));
    std::vector<JSON> rows;
    TEXT_TABLE table({"value", "name"});
    for (std::size_t value = 1; value < names.size(); ++value) {
        rows.push_back({{"value", value}, {"name", names[value]}});
        table.add({std::to_string(value), names[value]});
    }
    print_listing(row(), rows, table, given, command);
}

}  // namespace

std::vector<std::string> enumeration_names() {
    return {TYPES.begin(), TYPES.end()};
}

std::vector<std::string> enumerator_names(const std::string& enumeration) {
    const bool known = std::find(TYPES.begin(), TYPES.end(), enumeration) != TYPES.end();
    return known ? names_of(parse_type(enumeration)) : std::vector<std::string>();
}

NOUN_CONTENTS enum_contents() {
    const ARGUMENT type{"TYPE", "Enumeration: " + type_list()};
    return {list_of(VERB("name", "The name of a value", "pgmdev enum name option-bit 21", show_enumerator_name)
                        .takes(type)
                        .takes({"VALUE", "Value, decimal or 0x...; - reads one per line"})
                        .answers(question),
                    VERB("value", "The value of a name", "pgmdev enum value option-bit AES_KEYS", show_enumerator_value)
                        .takes(type)
                        .takes({"NAME", "Name, in any case; - reads one per line"})
                        .answers(question),
                    with_list_options(
                        VERB("list", "All values and their names", "pgmdev enum list sector", list).takes(type), row))};
}

#include <fmt/core.h>

#include <iostream>

#include "cfg.h"
#include "flash/output.h"
#include "flash/verbs.h"
#include "pgmdev_user_flash.h"
#include "terminal/answer.h"
#include "terminal/library_output.h"
#include "terminal/standard_error.h"
#include "terminal/text_table.h"

namespace {

/// A description that the library would pass over ends the command as a refused table does.
constexpr EXIT_CODE REFUSED = EXIT_INTERNAL_ERROR;

void show_faults(const PGMDEV_USER_FLASH& flash) {
    for (const std::string& fault : flash.faults()) {
        print_error("pgmdev: the description is refused: {}\n", printable(fault));
    }
}

JSON description_json(const PGMDEV_USER_FLASH& flash) {
    JSON record;  // null unless all values were accepted
    if (flash.complete()) {
        add_members(record, flash.record());
    }
    return {{"body", flash.body()},
            {"password", flash.password()},
            {"password_valid", flash.password_valid()},
            {"plausible", flash.plausible()},
            {"record", record},
            {"faults", flash.faults()}};
}

void print_description(const PGMDEV_USER_FLASH& flash) {
    fmt::print("{:<20}  {}\n", "body", printable(flash.body()));
    fmt::print("{:<20}  {}, {}\n", "password", printable(flash.password()),
               flash.password_valid() ? "fits this build" : "does not fit this build");
    fmt::print("{:<20}  {}\n", "plausible", flash.plausible() ? "yes" : "no");
    if (flash.complete()) {
        print_members(0, flash.record());
    }
}

/// Found is a description that the library takes.
ANSWER decode_one(const std::string& text) {
    const PGMDEV_USER_FLASH flash = PGMDEV_USER_FLASH::from_encoded(text);
    show_faults(flash);
    ANSWER answer;
    answer.found = flash.faults().empty();
    answer.when_missing = REFUSED;
    answer.content = description_json(flash);
    answer.print = [flash] { print_description(flash); };
    answer.is_block = true;
    return answer;
}

}  // namespace

void define_flash(const ARGUMENTS&, COMMAND& command) {
    std::ostream& prompts = command.json ? std::cerr : answer_stream();
    std::cin.tie(&prompts);  // a question is shown before its answer is awaited
    const std::string encoded = PGMDEV_USER_FLASH::define(std::cin, prompts);
    if (encoded.empty()) {
        throw USAGE_ERROR(std::cin.fail() ? "the input ended before the last question was answered"
                                          : "no flash was defined");
    }
    if (command.json) {
        print_json({{"encoded", encoded}});
    }
    const PGMDEV_USER_FLASH flash = PGMDEV_USER_FLASH::from_encoded(encoded);
    show_faults(flash);
    if (!flash.faults().empty()) {
        command.result = REFUSED;
    }
}

void decode_flash(const ARGUMENTS& given, COMMAND& command) {
    answer_each(given.text("TEXT"), command, decode_one);
}

JSON define_schema() {
    return object_schema({{"encoded", text_schema()}});
}

JSON decode_schema() {
    const std::vector<SCHEMA_MEMBER> content{{"body", text_schema()},
                                             {"password", text_schema()},
                                             {"password_valid", flag_schema()},
                                             {"plausible", flag_schema()},
                                             {"record", or_null(object_schema(record_members()))},
                                             {"faults", array_schema(text_schema())}};
    return question_schema(content, {"body", "password", "password_valid", "plausible", "record", "faults"});
}

void use_user_flash(const std::string& text) {
    const PGMDEV_USER_FLASH flash = PGMDEV_USER_FLASH::from_encoded(text);
    if (!flash.faults().empty()) {
        throw USAGE_ERROR("the description is refused: " + flash.faults().front());
    }
    cfg_set_value(PGMDEV_USER_FLASH::CONFIGURATION_KEY, text);
}

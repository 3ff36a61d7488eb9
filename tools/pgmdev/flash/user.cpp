#include <fmt/core.h>

#include <iostream>

#include "cfg.h"
#include "flash/output.h"
#include "flash/verbs.h"
#include "pgmdev_user_flash.h"
#include "terminal/input.h"
#include "terminal/library_output.h"
#include "terminal/text_table.h"

namespace {

/// A description that the library would pass over ends the command as a refused table does.
void show_faults(const PGMDEV_USER_FLASH& flash, COMMAND& command) {
    for (const std::string& fault : flash.faults()) {
        fmt::print(stderr, "pgmdev: the description is refused: {}\n", printable(fault));
        command.result = EXIT_INTERNAL_ERROR;
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

void decode_one(const std::string& text, bool batch, COMMAND& command) {
    const PGMDEV_USER_FLASH flash = PGMDEV_USER_FLASH::from_encoded(text);
    show_faults(flash, command);
    if (command.json) {
        print_json_answer(description_json(flash), batch);
    } else {
        print_description(flash);
    }
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
    show_faults(PGMDEV_USER_FLASH::from_encoded(encoded), command);
}

void decode_flash(const ARGUMENTS& given, COMMAND& command) {
    for_each_item(given.text("TEXT"), [&](const std::string& text, bool batch) { decode_one(text, batch, command); });
}

void use_user_flash(const std::string& text) {
    const PGMDEV_USER_FLASH flash = PGMDEV_USER_FLASH::from_encoded(text);
    if (!flash.faults().empty()) {
        throw USAGE_ERROR("the description is refused: " + flash.faults().front());
    }
    cfg_set_value(PGMDEV_USER_FLASH::CONFIGURATION_KEY, text);
}

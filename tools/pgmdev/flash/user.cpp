#include <fmt/core.h>

#include <optional>

#include "cfg.h"
#include "flash/chip.h"
#include "flash/output.h"
#include "flash/verbs.h"
#include "pgmdev_user_flash.h"
#include "terminal/answer.h"
#include "terminal/printable.h"
#include "terminal/standard_error.h"

namespace {

/// A description that the library would pass over ends the command as a refused table does.
constexpr EXIT_CODE REFUSED = EXIT_INTERNAL_ERROR;

void show_faults(const PGMDEV_USER_FLASH& flash) {
    for (const std::string& fault : flash.faults()) {
        print_error("pgmdev: the description is refused: {}", fault);
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

std::vector<SCHEMA_MEMBER> description_members() {
    return {{"body", text_schema()},
            {"password", text_schema()},
            {"password_valid", flag_schema()},
            {"plausible", flag_schema()},
            {"record", or_null(object_schema(record_members()))},
            {"faults", array_schema(text_schema())}};
}

void print_description(const PGMDEV_USER_FLASH& flash) {
    fmt::print("{:<20}  {}\n", "body", printable(flash.body()));
    fmt::print("{:<20}  {}, {}\n", "password", printable(flash.password()),
               flash.password_valid() ? "fits this build" : "does not fit this build");
    fmt::print("{:<20}  {}\n", "plausible", flash.plausible() ? "yes" : "no");
    if (flash.complete()) {
        print_members(std::nullopt, flash.record());
    }
}

/// All of a text. The first one is taken or none.
void print_descriptions(const std::vector<PGMDEV_USER_FLASH>& all) {
    for (std::size_t i = 0; i < all.size(); ++i) {
        const bool taken = i == 0 && all[i].faults().empty();
        fmt::print("{:<20}  {} of {}, {}\n", "description", i + 1, all.size(),
                   taken    ? "which is taken"
                   : i == 0 ? "which is refused"
                            : "which is passed over: only the first one counts");
        print_description(all[i]);
    }
}

/// Found is a description that the library takes.
ANSWER decode_one(const std::string& text) {
    const std::vector<PGMDEV_USER_FLASH> all = PGMDEV_USER_FLASH::all_from_encoded(text);
    const PGMDEV_USER_FLASH& first = all.front();
    show_faults(first);
    ANSWER answer;
    answer.found = first.faults().empty();
    answer.when_missing = REFUSED;
    answer.content = description_json(first);
    JSON descriptions = JSON::array();
    for (std::size_t i = 0; i < all.size(); ++i) {
        JSON description = description_json(all[i]);
        description["taken"] = i == 0 && first.faults().empty();
        descriptions.push_back(std::move(description));
    }
    answer.content["descriptions"] = descriptions;
    answer.print = [all] { print_descriptions(all); };
    answer.is_block = true;
    return answer;
}

}  // namespace

void decode_flash(const ARGUMENTS& given, COMMAND& command) {
    answer_each(given.text("TEXT"), command, decode_one);
}

JSON decode_schema() {
    std::vector<SCHEMA_MEMBER> members = description_members();
    members.push_back({"taken", flag_schema()});
    std::vector<SCHEMA_MEMBER> content = description_members();
    content.push_back({"descriptions", array_schema(object_schema(members))});
    return question_schema(content,
                           {"body", "password", "password_valid", "plausible", "record", "faults", "descriptions"});
}

void use_user_flash(const std::string& argument) {
    const std::string text = user_flash_text(argument);
    const PGMDEV_USER_FLASH flash = PGMDEV_USER_FLASH::from_encoded(text);
    if (!flash.faults().empty()) {
        throw USAGE_ERROR("the description is refused: " + flash.faults().front());
    }
    cfg_set_value(PGMDEV_USER_FLASH::CONFIGURATION_KEY, text);
}

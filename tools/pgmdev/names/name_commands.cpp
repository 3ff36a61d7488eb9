#include <fmt/core.h>

#include <algorithm>
#include <variant>
#include <vector>

#include "catalog/nearest_names.h"
#include "names/spellings.h"
#include "nouns.h"
#include "terminal/answer.h"
#include "terminal/json.h"
#include "terminal/schema.h"

namespace {

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

/// The spellings of a name that the grammar does not convert: a family, a programmer family, a device without
/// programmer file, or an alias. Unchanged when it is none of these either.
std::vector<SPELLING> spellings_by_scheme(const std::string& name, bool& found) {
    static NAME_SCHEMES schemes;
    const NAME_MEANING meaning = schemes.meaning_of(name);
    found = !meaning.schemes.empty();
    return spellings_of(meaning);
}

ANSWER show_one(const std::string& name) {
    std::vector<SPELLING> spellings = spellings_of(name);
    ANSWER answer;
    answer.found = is_known(spellings);
    if (!answer.found) {
        spellings = spellings_by_scheme(name, answer.found);
    }
    answer.content = to_json(spellings);
    if (answer.found) {
        answer.print = [spellings] { print_spellings(spellings); };
        answer.is_block = true;
    } else {
        answer.missing = fmt::format("no device is named \"{}\"", name);
        answer.candidates = nearest_names(
            name, {.part = true, .package_or_programming = true, .programmer_part = true, .device = true});
    }
    return answer;
}

void show_spellings(const ARGUMENTS& given, COMMAND& command) {
    answer_each(given.text("NAME"), command, show_one);
}

JSON name_schema() {
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

NOUN_CONTENTS name_contents() {
    VERB verb = VERB("show", "Every spelling of a name", "pgmdev --json name show KES50C6", show_spellings)
                    .takes({"NAME",
                            "Full, package, programming, programmer-file, device or family name, or alias, in "
                            "any case; - reads one "
                            "per line"})
                    .answers(name_schema);
    return {list_of(std::move(verb))};
}

#include <fmt/core.h>

#include <algorithm>
#include <variant>
#include <vector>

#include "names/device_names.h"
#include "names/spellings.h"
#include "nouns.h"
#include "terminal/did_you_mean.h"
#include "terminal/input.h"
#include "terminal/json.h"

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

std::string similar_names(const std::string& name) {
    std::vector<std::string> names = part_names();
    for (const auto& more : {package_and_programming_names(), programmer_part_names(), device_names()}) {
        names.insert(names.end(), more.begin(), more.end());
    }
    return did_you_mean(nearest(name, names));
}

void show(const ARGUMENTS& given, COMMAND& command) {
    for_each_item(given.text("NAME"), [&](const std::string& item, bool batch) {
        const std::vector<SPELLING> spellings = spellings_of(item);
        const bool known = is_known(spellings);
        if (!known) {
            command.result = EXIT_NOT_FOUND;
            fmt::print(stderr, "pgmdev: no device is named \"{}\"{}\n", item, batch ? "" : similar_names(item));
        }
        if (command.json && (known || batch)) {
            print_json_answer(to_json(spellings), batch);
        } else if (known) {
            print_spellings(spellings);
            fmt::print("{}", batch ? "\n" : "");
        }
    });
}

}  // namespace

NOUN name_noun() {
    const VERB verb =
        VERB("show", "Every spelling of a name", "pgmdev --json name show KES50C6", show)
            .takes({"NAME",
                    "Full, package, programming, programmer-file or device name, in any case; - reads one per line"});
    return {"name", "The spellings of a device's name", "pgmdev name show KES50C6", {verb}};
}

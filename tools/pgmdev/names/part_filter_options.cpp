#include "names/part_filter_options.h"

#include <fmt/core.h>

#include <array>
#include <utility>

#include "gen.h"
#include "names/device_names.h"
#include "terminal/did_you_mean.h"
#include "terminal/filtered_listing.h"

namespace {

struct TEXT_FILTER {
    const char* option;
    const char* value_name;
    const char* description;
    std::string PART_FILTER::*field;
    const std::vector<std::string>& (*known)();  ///< null: the device library does not tell
};

struct FLAG_FILTER {
    const char* option;
    const char* description;
    bool PART_FILTER::*field;
};

constexpr std::array TEXT_FILTERS{
    TEXT_FILTER{"--family", "NAME", "Of this family", &PART_FILTER::family, family_names},
    TEXT_FILTER{"--device", "NAME", "Of this device", &PART_FILTER::device, device_names},
    TEXT_FILTER{"--package", "TYPE", "In packages of this type, such as FBGA", &PART_FILTER::package, nullptr},
    TEXT_FILTER{"--pins", "COUNT", "In packages with this many pins", &PART_FILTER::pins, nullptr},
    TEXT_FILTER{"--speed", "GRADE", "Of this speed grade, such as 6", &PART_FILTER::speed, nullptr},
    TEXT_FILTER{"--temperature", "RANGE", "For this range of temperatures, such as INDUSTRIAL",
                &PART_FILTER::temperature, nullptr},
};

constexpr std::array FLAG_FILTERS{
    FLAG_FILTER{"--orderable", "Only parts with an ordering code", &PART_FILTER::orderable},
    FLAG_FILTER{"--production", "Only parts in production", &PART_FILTER::production},
    FLAG_FILTER{"--hidden", "Hidden parts, too", &PART_FILTER::hidden},
};

std::string value_of(const TEXT_FILTER& filter, const ARGUMENTS& given) {
    return gen_remove_leading_and_trailing_white_spaces(given.text(filter.option));
}

}  // namespace

VERB with_part_filters(VERB verb) {
    for (const TEXT_FILTER& filter : TEXT_FILTERS) {
        verb.takes({filter.option, filter.description, ARGUMENT::OPTIONAL_TEXT, filter.value_name});
    }
    for (const FLAG_FILTER& filter : FLAG_FILTERS) {
        verb.takes({filter.option, filter.description, ARGUMENT::FLAG});
    }
    return verb;
}

PART_FILTER part_filter(const ARGUMENTS& given) {
    PART_FILTER parts;
    for (const TEXT_FILTER& filter : TEXT_FILTERS) {
        if (given.has(filter.option)) {
            parts.*filter.field = value_of(filter, given);
        }
    }
    for (const FLAG_FILTER& filter : FLAG_FILTERS) {
        parts.*filter.field = given.has(filter.option);
    }
    return parts;
}

std::string empty_list_text(const std::string& thing, const ARGUMENTS& given) {
    std::string reasons;
    for (const TEXT_FILTER& filter : TEXT_FILTERS) {
        PART_FILTER alone;
        alone.hidden = true;
        alone.*filter.field = given.has(filter.option) ? value_of(filter, given) : PART_FILTER::ANY;
        if (part_numbers(alone).empty()) {
            const std::string& value = alone.*filter.field;
            reasons += fmt::format("; no part passes {} {}", filter.option, value);
            reasons += filter.known != nullptr ? did_you_mean(nearest(value, filter.known())) : "";
        }
    }
    return fmt::format("there is no {}{} that passes all filters{}", thing, given_pattern_text(given), reasons);
}

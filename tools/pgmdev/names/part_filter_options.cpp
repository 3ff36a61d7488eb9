#include "names/part_filter_options.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <utility>

#include "catalog/device_names.h"
#include "gen.h"
#include "names/part_values.h"
#include "pgmdev_device_grammar_mgr.h"
#include "terminal/did_you_mean.h"
#include "terminal/filtered_listing.h"
#include "terminal/quiet.h"

namespace {

struct TEXT_FILTER {
    const char* option;
    const char* value_name;
    const char* description;
    std::string PART_FILTER::*field;
    const std::vector<std::string>& (*known)();
};

struct FLAG_FILTER {
    const char* option;
    const char* description;
    bool PART_FILTER::*field;
};

template <std::vector<std::string> PART_VALUES::*MEMBER>
const std::vector<std::string>& values() {
    return part_values().*MEMBER;
}

constexpr std::array TEXT_FILTERS{
    TEXT_FILTER{"--family", "NAME", "Of this family", &PART_FILTER::family, family_names},
    TEXT_FILTER{"--device", "NAME", "Of this device", &PART_FILTER::device, device_names},
    TEXT_FILTER{"--package", "TYPE", "In packages of this type, such as FBGA", &PART_FILTER::package,
                values<&PART_VALUES::packages>},
    TEXT_FILTER{"--pins", "COUNT", "In packages with this many pins", &PART_FILTER::pins, values<&PART_VALUES::pins>},
    TEXT_FILTER{"--speed", "GRADE", "Of this speed grade, such as 6", &PART_FILTER::speed,
                values<&PART_VALUES::speeds>},
    TEXT_FILTER{"--temperature", "RANGE", "For this range of temperatures, such as INDUSTRIAL",
                &PART_FILTER::temperature, values<&PART_VALUES::temperatures>},
};

constexpr std::array FLAG_FILTERS{
    FLAG_FILTER{"--orderable", "Only parts with an ordering code", &PART_FILTER::orderable},
    FLAG_FILTER{"--production", "Only parts in production", &PART_FILTER::production},
    FLAG_FILTER{"--hidden", "Hidden parts, too", &PART_FILTER::hidden},
};

bool is_number(const std::string& text) {
    return !text.empty() && text.size() < 10 && text.find_first_not_of("0123456789") == std::string::npos;
}

/// The values that lie next to a number, below and above it.
std::vector<std::string> neighbours(const std::string& number, const std::vector<std::string>& known) {
    const auto above = std::find_if(known.begin(), known.end(), [&number](const std::string& value) {
        return is_number(value) && std::stoul(value) > std::stoul(number);
    });
    std::vector<std::string> found;
    if (above != known.begin()) {
        found.push_back(*(above - 1));
    }
    if (above != known.end()) {
        found.push_back(*above);
    }
    return found;
}

/// Why no part is of a device that there is.
constexpr const char* WITHOUT_PARTS = ": there is that device, but only programmer files may name it";

/// The families that a programmer-file family of that name is for.
std::vector<std::string> families_of(const std::string& programmer_family) {
    std::vector<std::string> families;
    for (const std::string& family : family_names()) {
        if (gen_stricmp(PGMDEV_DEVICE_GRAMMAR_MGR::get_pcf_family_pcf(family), programmer_family) == 0) {
            families.push_back(family);
        }
    }
    return families;
}

/// What may have been meant by a value that no part has, or why none has it.
std::string meant(const TEXT_FILTER& filter, const std::string& value) {
    const std::vector<std::string>& known = filter.known();
    if (filter.field == &PART_FILTER::device &&
        dstr_is_valid_dev_device_enum(dstr_get_dev_device_enum_by_string(value.c_str()))) {
        return is_quiet() ? "" : WITHOUT_PARTS;
    }
    if (const std::vector<std::string> families = families_of(value);
        filter.field == &PART_FILTER::family && !families.empty() && !is_quiet()) {
        return fmt::format(": that is what programmer files say for {}", fmt::join(families, ", "));
    }
    if (is_number(value) && is_number(known.front())) {
        return did_you_mean(neighbours(value, known));
    }
    return nearest_or_all(value, known);
}

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
            reasons += meant(filter, value);
        }
    }
    return fmt::format("there is no {}{} that passes all filters{}", thing, given_pattern_text(given), reasons);
}

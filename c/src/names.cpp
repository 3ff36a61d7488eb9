#include <array>

#include "names_of_kinds.h"
#include "pgmdev_c_names.h"
#include "pgmdev_device_grammar_mgr.h"
#include "pgmdev_part_index.h"
#include "records.h"

// One spelling of a name to another.

namespace {

using GRAMMAR = PGMDEV_DEVICE_GRAMMAR_MGR;

std::string part_file(const std::string& name) {
    std::string part;
    std::string family;
    GRAMMAR::get_pgm_pcfs(name, part, family);
    return part;
}

std::string family_file(const std::string& name) {
    std::string part;
    std::string family;
    GRAMMAR::get_pgm_pcfs(name, part, family);
    return family;
}

/// A conversion, and what its result is called among all spellings of a name.
struct CONVERSION {
    const char* member;
    std::string (*convert)(const std::string& name, uint32_t options);
};

bool has(uint32_t options, uint32_t option) {
    return (options & option) != 0;
}

/// By pgmdev_name_conversion.
constexpr std::array<CONVERSION, PGMDEV_NAME_CONVERSIONS> CONVERSIONS{{
    {"package_name",
     [](const std::string& name, uint32_t options) {
         return GRAMMAR::get_package_name(name, !has(options, PGMDEV_NAME_OR_ITSELF));
     }},
    {"pgm_name",
     [](const std::string& name, uint32_t options) {
         return GRAMMAR::get_pgm_name(name, has(options, PGMDEV_NAME_FROM_PACKAGE),
                                      !has(options, PGMDEV_NAME_OR_ITSELF));
     }},
    {"pgm_part_pcf", [](const std::string& name, uint32_t) { return GRAMMAR::get_pgm_part_pcf(name); }},
    {"pgm_family_pcf", [](const std::string& name, uint32_t) { return GRAMMAR::get_pgm_family_pcf(name); }},
    {"dev_part_pcf", [](const std::string& name, uint32_t) { return GRAMMAR::get_dev_part_pcf(name); }},
    {"dev_family_pcf", [](const std::string& name, uint32_t) { return GRAMMAR::get_dev_family_pcf(name); }},
    {"pcf_family_pcf", [](const std::string& name, uint32_t) { return GRAMMAR::get_pcf_family_pcf(name); }},
    {"family", [](const std::string& name, uint32_t) { return GRAMMAR::get_family(name); }},
    {"pcf_device", [](const std::string& name, uint32_t) { return GRAMMAR::get_pcf_device(name); }},
    {"part_pcf", [](const std::string& name, uint32_t) { return part_file(name); }},
    {"family_pcf", [](const std::string& name, uint32_t) { return family_file(name); }},
}};

constexpr uint32_t ALL_OPTIONS = PGMDEV_NAME_OR_ITSELF | PGMDEV_NAME_FROM_PACKAGE;

struct KIND {
    uint32_t bit;
    bool NAME_KINDS::*kind;
};

constexpr std::array KINDS{
    KIND{PGMDEV_NAMED_PART, &NAME_KINDS::part},
    KIND{PGMDEV_NAMED_PACKAGE, &NAME_KINDS::package_or_programming},
    KIND{PGMDEV_NAMED_PROGRAMMER_PART, &NAME_KINDS::programmer_part},
    KIND{PGMDEV_NAMED_DEVICE, &NAME_KINDS::device},
    KIND{PGMDEV_NAMED_FAMILY, &NAME_KINDS::family},
};

NAME_KINDS kinds_from(uint32_t bits) {
    require_argument(bits != 0 && (bits & ~uint32_t{PGMDEV_NAMED_ANYTHING}) == 0, "there are no such kinds of names");
    NAME_KINDS kinds;
    for (const KIND& each : KINDS) {
        kinds.*each.kind = has(bits, each.bit);
    }
    return kinds;
}

pgmdev_status give_flag(bool* answer, const char* name, bool (*question)(const std::string&), pgmdev_error** error) {
    return guarded(error, [&]() -> pgmdev_status {
        emptied(answer);
        *answer = question(required_text(name));
        return PGMDEV_STATUS_OK;
    });
}

}  // namespace

pgmdev_status pgmdev_name_convert(pgmdev_name_conversion conversion, const char* name, uint32_t options,
                                  pgmdev_string** converted, pgmdev_error** error) {
    return guarded(error, [&] {
        emptied(converted);
        require_argument(conversion < CONVERSIONS.size(), "there is no conversion of that number");
        require_argument((options & ~ALL_OPTIONS) == 0, "there is no such option");
        return give_text(converted, CONVERSIONS.at(conversion).convert(required_text(name), options));
    });
}

pgmdev_status pgmdev_name_is_full_for_all(const char* name, bool* answer, pgmdev_error** error) {
    return give_flag(answer, name, GRAMMAR::use_full_name, error);
}

pgmdev_status pgmdev_name_is_package_for_programming(const char* name, bool* answer, pgmdev_error** error) {
    return give_flag(answer, name, GRAMMAR::use_package_name, error);
}

pgmdev_status pgmdev_name_spellings(const char* name, pgmdev_records** spellings, pgmdev_error** error) {
    return guarded(error, [&]() -> pgmdev_status {
        emptied(spellings);
        const std::string given = required_text(name);
        std::vector<MEMBER> members;
        std::vector<DATUM> values;
        for (const CONVERSION& conversion : CONVERSIONS) {
            // Each gets a text of its own, which it converts to upper case.
            members.push_back(text_member(conversion.member));
            values.push_back(text_value(conversion.convert(std::string(given), 0)));
        }
        members.push_back(flag_member("use_full_name"));
        values.push_back(flag_value(GRAMMAR::use_full_name(std::string(given))));
        members.push_back(flag_member("use_package_name"));
        values.push_back(flag_value(GRAMMAR::use_package_name(std::string(given))));
        members.push_back(text_member("possible_full_name"));
        values.push_back(text_value(PGMDEV_PART_INDEX().get_possible_full_name(given)));
        pgmdev_records found(std::move(members));
        found.add(std::move(values));
        *spellings = new pgmdev_records(std::move(found));
        return PGMDEV_STATUS_OK;
    });
}

pgmdev_status pgmdev_name_origins(const char* name, pgmdev_records** origins, pgmdev_error** error) {
    return guarded(error, [&]() -> pgmdev_status {
        emptied(origins);
        *origins = new pgmdev_records(names_list(PGMDEV_PART_INDEX::get_origins(required_text(name))));
        return PGMDEV_STATUS_OK;
    });
}

pgmdev_status pgmdev_name_converted(pgmdev_records** names, pgmdev_error** error) {
    return guarded(error, [&]() -> pgmdev_status {
        emptied(names);
        *names = new pgmdev_records(names_list(PGMDEV_PART_INDEX::get_converted_names()));
        return PGMDEV_STATUS_OK;
    });
}

pgmdev_status pgmdev_name_suggestions(const char* name, uint32_t kinds, pgmdev_records** suggestions,
                                      pgmdev_error** error) {
    return guarded(error, [&]() -> pgmdev_status {
        emptied(suggestions);
        const NAME_KINDS wanted = kinds_from(kinds);
        const std::string unknown = required_text(name);
        const auto converted = converted_for(wanted, PGMDEV_PART_INDEX::get_converted_names);
        *suggestions = new pgmdev_records(names_list(nearest_names(unknown, wanted, converted)));
        return PGMDEV_STATUS_OK;
    });
}

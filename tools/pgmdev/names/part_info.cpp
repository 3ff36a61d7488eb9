#include "names/part_info.h"

#include <fmt/core.h>

#include <algorithm>
#include <memory>
#include <optional>
#include <set>
#include <string_view>
#include <utility>

#include "catalog/device_names.h"
#include "names/name_schemes.h"
#include "names/spellings.h"
#include "pgmdev_mgr.h"
#include "profile/look_up.h"
#include "profile/output.h"
#include "terminal/answer.h"
#include "terminal/failure.h"
#include "terminal/printable.h"
#include "terminal/reports.h"
#include "terminal/schema.h"

namespace {

constexpr std::string_view PARTS_KEY = "parts";
constexpr std::string_view HASH_KEY = "opn_hash";

/// What is asked: made once for all questions of a run.
struct SOURCES {
    NAME_SCHEMES schemes;
    std::optional<PROFILE_DATABASE> profiles;
    std::optional<FAILURE> without_profiles;  ///< why there are none, when they were needed
};

/// The profiles; null when they cannot be read, which is told once. The catalog answers the rest all the same.
PROFILE_DATABASE* profiles_of(SOURCES& sources) {
    if (!sources.profiles && !sources.without_profiles) {
        try {
            sources.profiles.emplace();
        } catch (const COMMAND_FAILURE& error) {
            sources.without_profiles = error.failure();
            tell_failure(error.failure(), false);
            forget_report();
        }
    }
    return sources.profiles ? &*sources.profiles : nullptr;
}

/// What the parts that a name stands for have in common.
struct COMMON {
    const PART_ENTRY* part = nullptr;    ///< the part that the name is of
    const PART_ENTRY* device = nullptr;  ///< any of the parts, when all are of one device
    const PART_ENTRY* family = nullptr;  ///< any of the parts, when all are of one family
};

COMMON common_of(const NAME_MEANING& meaning) {
    COMMON common;
    std::set<int> devices;
    std::set<int> families;
    for (const PART_ENTRY& part : meaning.parts) {
        devices.insert(part.device_number);
        families.insert(part.family_number);
        if (part.name == meaning.name) {
            common.part = &part;
        }
    }
    common.device = devices.size() == 1 ? &meaning.parts.front() : nullptr;
    common.family = families.size() == 1 ? &meaning.parts.front() : nullptr;
    return common;
}

/// The profile of the most specific of part, device and family.
FOUND_PROFILE profile_of(const COMMON& common, PROFILE_DATABASE& profiles) {
    if (common.part != nullptr) {
        return look_up_profile(profiles, PROFILE_KEY::PART, common.part->number);
    }
    if (common.device != nullptr) {
        return look_up_profile(profiles, PROFILE_KEY::DEVICE, common.device->device_number);
    }
    return look_up_profile(profiles, PROFILE_KEY::FAMILY,
                           common.family != nullptr ? common.family->family_number : DEV_FAMILY_INVALID);
}

/// One line for people, and one member for programs.
struct FACT {
    std::string_view key;
    std::string label;
    JSON value;
    std::string text;  ///< "": people are not told
};

FACT text_fact(const char* key, const char* label, const std::string& text) {
    return {key, label, text, text};
}

FACT flag_fact(const char* key, const char* label, const PART_ENTRY* part, bool PART_ENTRY::*flag) {
    return part == nullptr ? FACT{key, label, {}, ""} : FACT{key, label, part->*flag, part->*flag ? "yes" : "no"};
}

FACT number_fact(const char* key, const char* label, const std::optional<DWORD>& number) {
    return {key, label, number, number ? std::to_string(*number) : ""};
}

std::string joined(const std::vector<std::string>& texts) {
    std::string text;
    for (const std::string& each : texts) {
        text += (text.empty() ? "" : ", ") + each;
    }
    return text;
}

void add_part_facts(std::vector<FACT>& facts, const PART_ENTRY* part) {
    std::optional<DWORD> number;
    std::optional<DWORD> index;
    FACT hash{HASH_KEY, "hash", {}, ""};
    if (part != nullptr) {
        number = static_cast<DWORD>(part->number);
        const DWORD first = PGMDEV_MGR::get_opn_enum(part->name);
        index = first != INVALID_DWORD ? std::optional(first) : std::nullopt;
        const QWORD value = PGMDEV_MGR::get_opn_hash(part->name);
        hash.value = value;
        hash.text = fmt::format("0x{:012X}", value);
    }
    facts.push_back(number_fact("number", "part number", number));
    facts.push_back(number_fact("opn_index", "ordering-code index", index));
    facts.push_back(std::move(hash));
    facts.push_back(flag_fact("orderable", "orderable", part, &PART_ENTRY::orderable));
    facts.push_back(flag_fact("production", "in production", part, &PART_ENTRY::production));
    facts.push_back(flag_fact("hidden", "hidden", part, &PART_ENTRY::hidden));
}

/// A characteristic that all parts have alike; "" when they differ.
std::string common_text(const NAME_MEANING& meaning, std::string PART_ENTRY::*member) {
    const auto differs = [&](const PART_ENTRY& part) { return part.*member != meaning.parts.front().*member; };
    const bool alike = !meaning.parts.empty() && std::none_of(meaning.parts.begin(), meaning.parts.end(), differs);
    return alike ? meaning.parts.front().*member : "";
}

void add_common_characteristics(std::vector<FACT>& facts, const NAME_MEANING& meaning) {
    const std::string package = common_text(meaning, &PART_ENTRY::package);
    const std::string pins = common_text(meaning, &PART_ENTRY::pins);
    const std::string speed = common_text(meaning, &PART_ENTRY::speed);
    const std::string temperature = common_text(meaning, &PART_ENTRY::temperature);
    facts.push_back({"package", "package", text_or_null(package), package});
    facts.push_back({"pins", "pins", number_or_null(pins), pins});
    facts.push_back({"speed", "speed grade", number_or_null(speed), speed});
    facts.push_back({"temperature", "temperature range", text_or_null(temperature), temperature});
}

void add_spellings(std::vector<FACT>& facts, const NAME_MEANING& meaning) {
    for (const SPELLING& spelling : spellings_of(meaning)) {
        if (const auto* flag = std::get_if<bool>(&spelling.value)) {
            facts.push_back({spelling.key, spelling.label, *flag, *flag ? "yes" : "no"});
        } else {
            facts.push_back(text_fact(spelling.key, spelling.label, std::get<std::string>(spelling.value)));
        }
    }
}

FACT profile_fact(const FOUND_PROFILE& found) {
    if (found.record == nullptr) {
        return {"profile", "profile", {}, ""};
    }
    const std::string key = key_text(*found.record);
    return {"profile", "profile", JSON{{"index", found.index}, {"rule", found.rule}, {"key", key}},
            fmt::format("record {}, keyed by {}, found {}", found.index, key, rule_text(found))};
}

FACT parts_fact(const NAME_MEANING& meaning) {
    constexpr std::size_t SHOWN = 4;
    std::vector<std::string> names;
    std::transform(meaning.parts.begin(), meaning.parts.end(), std::back_inserter(names),
                   [](const PART_ENTRY& part) { return part.name; });
    const std::vector<std::string> first(names.begin(),
                                         names.begin() + static_cast<std::ptrdiff_t>(std::min(SHOWN, names.size())));
    const std::string more = names.size() > SHOWN ? fmt::format(", and {} more", names.size() - SHOWN) : "";
    return {PARTS_KEY, fmt::format("stands for {} part{}", names.size(), names.size() == 1 ? "" : "s"), names,
            joined(first) + more};
}

std::vector<FACT> facts_of(const NAME_MEANING& meaning, PROFILE_DATABASE* profiles) {
    const COMMON common = common_of(meaning);
    std::vector<FACT> facts{
        {"scheme", "scheme", meaning.schemes.front(), ""},
        {"schemes", "schemes", meaning.schemes, joined(meaning.schemes)},
    };
    add_spellings(facts, meaning);
    facts.push_back(text_fact("device", "device", common.device != nullptr ? common.device->device : ""));
    add_part_facts(facts, common.part);
    add_common_characteristics(facts, meaning);
    facts.push_back(profile_fact(profiles != nullptr ? profile_of(common, *profiles) : FOUND_PROFILE()));
    facts.push_back(parts_fact(meaning));
    return facts;
}

ANSWER unknown_name(const std::string& question, NAME_SCHEMES& schemes) {
    ANSWER answer;
    answer.found = false;
    answer.missing = fmt::format("no part, and nothing that parts belong to, is named \"{}\"", question);
    answer.candidates = schemes.nearest_to(question);
    return answer;
}

/// For people. Labels are plain ASCII, as wide as they are long.
std::string lines_of(const std::vector<FACT>& facts) {
    constexpr std::size_t LABEL_WIDTH = 38;
    std::string lines;
    for (const FACT& fact : facts) {
        if (!fact.text.empty()) {
            lines.append(fact.label).append(LABEL_WIDTH - fact.label.size(), ' ');
            lines.append(printable(fact.text)).append(1, '\n');
        }
    }
    return lines;
}

ANSWER answer_to(const std::string& question, SOURCES& sources, bool for_programs) {
    const NAME_MEANING meaning = sources.schemes.meaning_of(question);
    if (meaning.schemes.empty()) {
        return unknown_name(question, sources.schemes);
    }
    ANSWER answer;
    std::vector<FACT> facts = facts_of(meaning, profiles_of(sources));
    answer.failure = sources.without_profiles;
    if (for_programs) {
        for (FACT& fact : facts) {
            answer.content[fact.key] = std::move(fact.value);
        }
        return answer;
    }
    answer.is_block = true;
    answer.print = [lines = lines_of(facts)] { fmt::print("{}", lines); };
    return answer;
}

void show_info(const ARGUMENTS& given, COMMAND& command) {
    SOURCES sources;
    answer_each(given.text("NAME"), command,
                [&](const std::string& question) { return answer_to(question, sources, command.json); });
}

JSON part_info_schema() {
    std::vector<SCHEMA_MEMBER> content{{"scheme", choice_schema(scheme_names())},
                                       {"schemes", array_schema(choice_schema(scheme_names()))}};
    for (const SPELLING& spelling : spellings_of("")) {
        const bool is_text = std::holds_alternative<std::string>(spelling.value);
        content.push_back({spelling.key, is_text ? text_schema() : flag_schema()});
    }
    const JSON profile =
        object_schema({{"index", number_schema()}, {"rule", choice_schema(PROFILE_RULES)}, {"key", text_schema()}});
    const std::vector<SCHEMA_MEMBER> more{{"device", text_schema()},
                                          {"number", or_null(number_schema())},
                                          {"opn_index", or_null(number_schema())},
                                          {"opn_hash", or_null(number_schema())},
                                          {"orderable", or_null(flag_schema())},
                                          {"production", or_null(flag_schema())},
                                          {"hidden", or_null(flag_schema())},
                                          {"package", or_null(text_schema())},
                                          {"pins", or_null(number_schema())},
                                          {"speed", or_null(number_schema())},
                                          {"temperature", or_null(text_schema())},
                                          {"profile", or_null(profile)},
                                          {"parts", array_schema(text_schema())},
                                          {"error", failure_reference(), false}};
    content.insert(content.end(), more.begin(), more.end());
    return question_schema(content, {});
}

/// The answer without its parts, which make it long, and without the hash, which follows from the name.
JSON facts_json(const NAME_MEANING& meaning, PROFILE_DATABASE& profiles) {
    JSON object = JSON::object();
    for (const FACT& fact : facts_of(meaning, &profiles)) {
        if (fact.key != PARTS_KEY && fact.key != HASH_KEY) {
            object[fact.key] = fact.value;
        }
    }
    return object;
}

}  // namespace

std::vector<JSON> facts_of_all_names() {
    NAME_SCHEMES schemes;
    PROFILE_DATABASE profiles;
    const std::vector<std::string> spellings = schemes.all_names();
    std::set<std::string> names(spellings.begin(), spellings.end());
    for (const auto* further : {&part_names(), &package_and_programming_names(), &programmer_part_names(),
                                &device_names(), &family_names()}) {
        names.insert(further->begin(), further->end());
    }
    std::vector<JSON> of_parts;
    std::vector<JSON> of_others;
    for (const std::string& name : names) {
        const NAME_MEANING meaning = schemes.meaning_of(name);
        if (meaning.schemes.empty() || meaning.name != name) {
            continue;  // in another case, or an alias
        }
        const bool is_part = common_of(meaning).part != nullptr;
        (is_part ? of_parts : of_others).push_back(facts_json(meaning, profiles));
    }
    of_parts.insert(of_parts.end(), of_others.begin(), of_others.end());
    return of_parts;
}

VERB part_info_verb() {
    return VERB("info", "Everything about a part, or about whatever else a name stands for, and all its parts",
                "pgmdev --json part info KES50C6", show_info)
        .takes({"NAME",
                "Name of a part, package, device or family, programming name, programmer-file name or alias, in any "
                "case; - reads one per line"})
        .answers(part_info_schema);
}

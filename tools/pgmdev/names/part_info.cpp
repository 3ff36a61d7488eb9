#include "names/part_info.h"

#include <fmt/core.h>

#include <algorithm>
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

/// What is common to the parts that a name stands for.
struct COMMON {
    std::optional<int> part;  ///< the one that the name is of
    DEV_DEVICE_ENUM device = DEV_DEVICE_INVALID;
    DEV_FAMILY_ENUM family = DEV_FAMILY_INVALID;
};

COMMON common_of(const NAME_MEANING& meaning) {
    const DEV_PART_MANAGER manager;
    COMMON common{meaning.part};
    if (meaning.parts.empty()) {
        return common;
    }
    const DEV_DEVICE_ENUM device = manager.get_device_of(meaning.parts.front());
    const DEV_FAMILY_ENUM family = manager.get_family_of(device);
    const auto all = [&](auto condition) { return std::all_of(meaning.parts.begin(), meaning.parts.end(), condition); };
    if (all([&](int part) { return manager.get_device_of(part) == device; })) {
        common.device = device;
    }
    if (all([&](int part) { return manager.get_family_of(manager.get_device_of(part)) == family; })) {
        common.family = family;
    }
    return common;
}

/// Parts of several families have no profile, whatever profiles there are.
bool may_have_profile(const COMMON& common) {
    return common.part || common.device != DEV_DEVICE_INVALID || common.family != DEV_FAMILY_INVALID;
}

/// The profile of the most specific of part, device and family.
FOUND_PROFILE profile_of(const COMMON& common, PROFILE_DATABASE& profiles) {
    if (common.part) {
        return look_up_profile(profiles, PROFILE_KEY::PART, *common.part);
    }
    if (common.device != DEV_DEVICE_INVALID) {
        return look_up_profile(profiles, PROFILE_KEY::DEVICE, common.device);
    }
    return look_up_profile(profiles, PROFILE_KEY::FAMILY, common.family);
}

/// Whom the facts are for.
enum class READER { PEOPLE, PROGRAMS };

/// How much is said of a name. In short, it has no parts, which make it long, and no hash, which follows from the name.
enum class EXTENT { IN_FULL, IN_SHORT };

/// What there is to say of a name: a line each for people, or a member each for programs.
class FACTS {
public:
    explicit FACTS(READER reader) : m_for_programs(reader == READER::PROGRAMS) {}

    bool are_for_programs() const { return m_for_programs; }
    const std::string& lines() const { return m_lines; }
    JSON& object() { return m_object; }

    /// People are told the text, unless it is "". Labels are plain ASCII, as wide as they are long.
    template <class VALUE>
    void add(std::string_view key, std::string_view label, const VALUE& value, const std::string& text) {
        constexpr std::size_t LABEL_WIDTH = 38;
        if (m_for_programs) {
            m_object[key] = value;
        } else if (!text.empty()) {
            m_lines.append(label).append(LABEL_WIDTH - label.size(), ' ').append(printable(text)).append(1, '\n');
        }
    }
    void add(std::string_view key, std::string_view label, const std::string& text) { add(key, label, text, text); }
    void add(std::string_view key, std::string_view label, const std::optional<bool>& flag) {
        add(key, label, flag ? JSON(*flag) : JSON(), !flag ? "" : *flag ? "yes" : "no");
    }
    void add(std::string_view key, std::string_view label, const std::optional<DWORD>& number) {
        add(key, label, number, number ? std::to_string(*number) : "");
    }

    std::optional<FAILURE> failure;  ///< why some of them are missing

private:
    bool m_for_programs;
    std::string m_lines;
    JSON m_object = JSON::object();
};

std::string joined(const std::vector<std::string>& texts) {
    std::string text;
    for (const std::string& each : texts) {
        text += (text.empty() ? "" : ", ") + each;
    }
    return text;
}

void add_part(FACTS& facts, const std::optional<int>& part, PART_ENTRIES& entries, EXTENT extent) {
    std::optional<DWORD> number;
    std::optional<DWORD> index;
    std::optional<QWORD> hash;
    std::optional<PART_STATUS> status;
    if (part) {
        const std::string name = upper_name(*part);
        number = static_cast<DWORD>(*part);
        const DWORD first = PGMDEV_MGR::get_opn_enum(name);
        index = first != INVALID_DWORD ? std::optional(first) : std::nullopt;
        hash = PGMDEV_MGR::get_opn_hash(name);
        status = entries.status_of(*part);
    }
    const auto flag = [&status](bool PART_STATUS::*member) {
        return status ? std::optional((*status).*member) : std::nullopt;
    };
    facts.add("number", "part number", number);
    facts.add("opn_index", "ordering-code index", index);
    if (extent == EXTENT::IN_FULL) {
        facts.add("opn_hash", "hash", hash, hash ? fmt::format("0x{:012X}", *hash) : "");
    }
    facts.add("orderable", "orderable", flag(&PART_STATUS::orderable));
    facts.add("production", "in production", flag(&PART_STATUS::production));
    facts.add("hidden", "hidden", flag(&PART_STATUS::hidden));
}

void add_common_characteristics(FACTS& facts, const NAME_MEANING& meaning, PART_ENTRIES& entries) {
    PART_CHARACTERISTICS common;
    if (!meaning.parts.empty()) {
        common = entries.common_characteristics(meaning.parts);
    }
    facts.add("package", "package", text_or_null(common.package), common.package);
    facts.add("pins", "pins", number_or_null(common.pins), common.pins);
    facts.add("speed", "speed grade", number_or_null(common.speed), common.speed);
    facts.add("temperature", "temperature range", text_or_null(common.temperature), common.temperature);
}

void add_spellings(FACTS& facts, const NAME_MEANING& meaning) {
    for (const SPELLING& spelling : spellings_of(meaning)) {
        if (const auto* flag = std::get_if<bool>(&spelling.value)) {
            facts.add(spelling.key, spelling.label, std::optional(*flag));
        } else {
            facts.add(spelling.key, spelling.label, std::get<std::string>(spelling.value));
        }
    }
}

void add_profile(FACTS& facts, const FOUND_PROFILE& found) {
    if (found.record == nullptr) {
        facts.add("profile", "profile", JSON(), "");
        return;
    }
    const std::string key = key_text(*found.record);
    if (facts.are_for_programs()) {
        facts.add("profile", "", JSON{{"index", found.index}, {"rule", found.rule}, {"key", key}}, "");
    } else {
        facts.add("", "profile", fmt::format("record {}, keyed by {}, found {}", found.index, key, rule_text(found)));
    }
}

/// Of many parts people are told the first ones.
void add_parts(FACTS& facts, const std::vector<int>& parts) {
    constexpr std::size_t SHOWN = 4;
    const std::size_t count = facts.are_for_programs() ? parts.size() : std::min(SHOWN, parts.size());
    std::vector<std::string> names;
    std::transform(parts.begin(), parts.begin() + static_cast<std::ptrdiff_t>(count), std::back_inserter(names),
                   upper_name<int>);
    const std::string more = parts.size() > count ? fmt::format(", and {} more", parts.size() - count) : "";
    facts.add("parts", fmt::format("stands for {} part{}", parts.size(), parts.size() == 1 ? "" : "s"), names,
              facts.are_for_programs() ? "" : joined(names) + more);
}

FACTS facts_of(const NAME_MEANING& meaning, SOURCES& sources, READER reader, EXTENT extent) {
    const COMMON common = common_of(meaning);
    PART_ENTRIES& entries = sources.schemes.entries();
    FACTS facts(reader);
    facts.add("scheme", "", meaning.schemes.front(), "");
    facts.add("schemes", "schemes", meaning.schemes, joined(meaning.schemes));
    add_spellings(facts, meaning);
    facts.add("device", "device", common.device != DEV_DEVICE_INVALID ? entries.device(common.device).device : "");
    add_part(facts, common.part, entries, extent);
    add_common_characteristics(facts, meaning, entries);
    FOUND_PROFILE profile;
    if (may_have_profile(common)) {
        PROFILE_DATABASE* profiles = profiles_of(sources);
        profile = profiles != nullptr ? profile_of(common, *profiles) : FOUND_PROFILE();
        facts.failure = sources.without_profiles;
    }
    add_profile(facts, profile);
    if (extent == EXTENT::IN_FULL) {
        add_parts(facts, meaning.parts);
    }
    return facts;
}

ANSWER unknown_name(const std::string& question, NAME_SCHEMES& schemes) {
    ANSWER answer;
    answer.found = false;
    answer.missing = fmt::format("no part, and nothing that parts belong to, is named \"{}\"", question);
    answer.candidates = schemes.nearest_to(question);
    return answer;
}

ANSWER answer_to(const std::string& question, SOURCES& sources, READER reader) {
    const NAME_MEANING meaning = sources.schemes.meaning_of(question);
    if (meaning.schemes.empty()) {
        return unknown_name(question, sources.schemes);
    }
    ANSWER answer;
    FACTS facts = facts_of(meaning, sources, reader, EXTENT::IN_FULL);
    answer.failure = facts.failure;
    if (reader == READER::PROGRAMS) {
        answer.content = std::move(facts.object());
        return answer;
    }
    answer.is_block = true;
    answer.print = [lines = facts.lines()] { fmt::print("{}", lines); };
    return answer;
}

void show_info(const ARGUMENTS& given, COMMAND& command) {
    SOURCES sources;
    const READER reader = command.json ? READER::PROGRAMS : READER::PEOPLE;
    answer_each(given.text("NAME"), command,
                [&](const std::string& question) { return answer_to(question, sources, reader); });
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

}  // namespace

std::vector<JSON> facts_of_all_names() {
    SOURCES sources;
    sources.profiles.emplace();  // or it fails: there is no page without them
    const std::vector<std::string> spellings = sources.schemes.all_names();
    std::set<std::string> names(spellings.begin(), spellings.end());
    for (const auto* further : {&part_names(), &package_and_programming_names(), &programmer_part_names(),
                                &device_names(), &family_names()}) {
        names.insert(further->begin(), further->end());
    }
    std::vector<JSON> of_parts;
    std::vector<JSON> of_others;
    for (const std::string& name : names) {
        const NAME_MEANING meaning = sources.schemes.meaning_of(name);
        if (meaning.schemes.empty() || meaning.name != name) {
            continue;  // in another case, or an alias
        }
        FACTS facts = facts_of(meaning, sources, READER::PROGRAMS, EXTENT::IN_SHORT);
        (meaning.part ? of_parts : of_others).push_back(std::move(facts.object()));
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

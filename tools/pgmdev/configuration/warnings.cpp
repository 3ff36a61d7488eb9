#include "configuration/warnings.h"

#include <fmt/core.h>

#include <algorithm>
#include <array>
#include <iterator>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "configuration/file.h"
#include "configuration/keys.h"
#include "files/environment.h"
#include "files/origins.h"
#include "gen.h"
#include "pgm_common.h"
#include "terminal/did_you_mean.h"
#include "terminal/failure.h"
#include "terminal/given_options.h"
#include "terminal/quiet.h"
#include "terminal/standard_error.h"
#include "text_lines.h"

namespace {

constexpr std::string_view LIBRARY_KEYS = "PGM_";  ///< the switches of rows begin like this
constexpr std::array<std::string_view, 3> OUR_PREFIXES{"TESSARY_", "PGM_", "PGMDEV_"};
constexpr std::array<std::string_view, 8> SWITCH_VALUES{"on", "true", "yes", "1", "off", "false", "no", "0"};

/// A setting, and where it stands.
struct SETTING {
    enum SOURCE { OPTION, ENVIRONMENT, FILE };

    SOURCE source;
    std::string place;  ///< for people
    std::string key;
    std::string value;
};

bool is_ours(const std::string& key) {
    return std::any_of(OUR_PREFIXES.begin(), OUR_PREFIXES.end(),
                       [&key](std::string_view prefix) { return key.starts_with(prefix); });
}

bool is_number(const std::string& text) {
    bool valid = false;
    PGM_COMMON::convert_string_to_dword(text, true, &valid, nullptr, false);
    return valid;
}

std::string unknown_key(const std::string& key, const KNOWN_KEYS& known) {
    std::vector<std::string> names;
    std::transform(known.keys.begin(), known.keys.end(), std::back_inserter(names),
                   [](const CONFIGURATION_KEY& entry) { return entry.name; });
    std::vector<std::string> meant = nearest(key, names);
    if (meant.empty()) {
        meant = longer_or_shorter(key, names);
    }
    return fmt::format("the key {} is not known{}", key, did_you_mean(meant));
}

/// What is wrong with a value; "" when nothing is.
std::string wrong_value(const CONFIGURATION_KEY& key, const std::string& value) {
    const auto is_value = [&value](std::string_view word) { return gen_stricmp(value, word) == 0; };
    if (key.kind == CONFIGURATION_KEY::SWITCH && !value.empty() &&
        std::none_of(SWITCH_VALUES.begin(), SWITCH_VALUES.end(), is_value)) {
        return fmt::format("the value \"{}\" of {} is neither on nor off", value, key.name);
    }
    if (key.kind == CONFIGURATION_KEY::NUMBER && !value.empty() && !is_number(value)) {
        return fmt::format("the value \"{}\" of {} is no number", value, key.name);
    }
    return "";
}

std::vector<CONFIGURATION_KEY>::const_iterator key_of(const SETTING& setting, const KNOWN_KEYS& known) {
    return std::find_if(known.keys.begin(), known.keys.end(),
                        [&setting](const CONFIGURATION_KEY& key) { return key.name == setting.key; });
}

/// What is wrong with a setting; "" when nothing is.
std::string fault_of(const SETTING& setting, const KNOWN_KEYS& known) {
    const auto key = key_of(setting, known);
    if (key == known.keys.end()) {
        if (setting.key.starts_with(ROW_SWITCH) && !known.row_switches) {
            return wrong_value({setting.key, CONFIGURATION_KEY::SWITCH}, setting.value);
        }
        return unknown_key(setting.key, known);
    }
    if (key->environment_only && setting.source != SETTING::ENVIRONMENT) {
        return fmt::format("the key {} counts only as an environment variable", setting.key);
    }
    return wrong_value(*key, setting.value);
}

/// Collects warnings in their order, each once.
class WARNINGS {
public:
    void add(const std::string& place, const std::string& fault) {
        const std::string text = fmt::format("{}: {}", place, fault);
        if (!is_quiet() && m_told.insert(text).second) {
            print_error("pgmdev: warning: {}", text);
        }
    }

private:
    std::set<std::string> m_told;
};

/// A line of the configuration file, or of --set, as key and value; nothing for one that is no assignment.
std::optional<std::pair<std::string, std::string>> assignment_of(const std::string& line) {
    const std::size_t equals = line.find('=');
    const std::string key = gen_remove_leading_and_trailing_white_spaces(line.substr(0, equals));
    if (equals == std::string::npos || key.empty()) {
        return std::nullopt;
    }
    return std::pair(key, gen_remove_leading_and_trailing_white_spaces(line.substr(equals + 1)));
}

void add_file_settings(const PLACE& place, std::vector<SETTING>& settings, WARNINGS& warnings) {
    const CONFIGURATION_FILE file = read_configuration_file(place.path);
    const bool is_named = !environment_text("TESSARY_CONFIG_FILE").empty();
    if (!file.exists && is_named) {
        warnings.add(place.tried.front(), fmt::format("there is no file {}", place.path));
    }
    if (!file.exists) {
        return;
    }
    if (!file.is_whole) {
        throw COMMAND_FAILURE({FAILURE_CODE::CONFIGURATION_UNREADABLE,
                               "the configuration file cannot be read" +
                                   (file.obstacle.empty() ? " to its end, or is larger than 1 MiB"
                                                          : fmt::format(", since {}", file.obstacle)),
                               place.path,
                               place.tried,
                               "make it readable, or name another one with TESSARY_CONFIG_FILE",
                               {}});
    }
    if (is_utf_16(file.text)) {
        warnings.add(place.path, "it is UTF-16, and nothing of it counts: save it as UTF-8");
        return;
    }
    std::size_t number = 0;
    for_each_line(without_byte_order_mark(file.text), [&](std::string_view whole) {
        const std::string line(whole);
        const std::string where = fmt::format("{}:{}", place.path, ++number);
        const std::string text = gen_remove_leading_and_trailing_white_spaces(line);
        if (text.empty() || text.starts_with('#')) {
            return;
        }
        if (const auto assignment = assignment_of(text)) {
            settings.push_back({SETTING::FILE, where, assignment->first, assignment->second});
        } else {
            warnings.add(where, fmt::format("\"{}\" is no assignment: expected KEY = VALUE", text));
        }
    });
}

}  // namespace

void warn_of_configuration() {
    WARNINGS warnings;
    std::vector<SETTING> settings;
    for (const std::string& text : given_values("--set")) {
        if (const auto assignment = assignment_of(text)) {
            const std::size_t equals = text.find('=');
            settings.push_back({SETTING::OPTION, "--set", text.substr(0, equals), text.substr(equals + 1)});
        }
    }
    for (const auto& [key, value] : environment_variables()) {
        if (is_ours(key)) {
            settings.push_back({SETTING::ENVIRONMENT, "environment", key, value});
        }
    }
    for (const PLACE& place : configuration_places()) {
        add_file_settings(place, settings, warnings);
    }
    std::erase_if(settings, [](const SETTING& setting) {
        return setting.source == SETTING::FILE && !is_ours(setting.key);  // others may keep their settings there
    });
    if (settings.empty()) {
        return;
    }
    KNOWN_KEYS known = known_keys(false);
    if (std::any_of(settings.begin(), settings.end(), [&known](const SETTING& setting) {
            return setting.key.starts_with(LIBRARY_KEYS) && key_of(setting, known) == known.keys.end();
        })) {
        known = known_keys(true);  // a row's switch, perhaps a misspelt one
    }
    for (const SETTING& setting : settings) {
        const std::string fault = fault_of(setting, known);
        if (!fault.empty()) {
            warnings.add(setting.place, fault);
        }
    }
}

#include "cfg.h"

#include <algorithm>
#include <array>
#include <mutex>
#include <optional>
#include <string_view>
#include <utility>

#include "configuration_lines.h"
#include "environment.h"
#include "file_reader.h"
#include "fio.h"
#include "gen.h"
#include "mostly_read_mutex.h"
#include "standard_places.h"
#include "unloading.h"
#include "utf8_path.h"

namespace {

constexpr const char* CONFIGURATION_FILE = "tessary.conf";

/// No configuration that people write comes near.
constexpr std::size_t LARGEST_CONFIGURATION = std::size_t{1} << 20;

/// Takes over what a file says. What was said before gives way. False when there is a file that cannot be read whole;
/// then nothing is taken, rather than a part.
bool read_configuration_file(const std::string& path, CONFIGURATION_VALUES& values) {
    std::string text;
    const READ_RESULT result =
        read_whole_file(fio_get_unc_full_path(path), LARGEST_CONFIGURATION, FILE_KINDS::REGULAR, text);
    read_configuration_lines(text, values);
    return result != READ_RESULT::FAILED;
}

/// `whole` tells whether all files that are there could be read.
CONFIGURATION_VALUES read_configuration_files(bool& whole) {
    CONFIGURATION_VALUES values;
    whole = true;
    for (const std::string& path : cfg_get_file_paths()) {
        whole = read_configuration_file(path, values) && whole;
    }
    return values;
}

std::string value_of(const CONFIGURATION_VALUES& values, const std::string& key) {
    const auto line = values.find(key);
    return line != values.end() ? line->second : std::string();
}

struct CONFIGURATION {
    MOSTLY_READ_MUTEX mutex;
    CONFIGURATION_VALUES set_by_program;
    std::optional<CONFIGURATION_VALUES> files;  ///< empty until the first look-up
};

CONFIGURATION& configuration() {
    return lasting<CONFIGURATION>();
}

/// Nothing while it may be in a file that has not been read.
std::optional<std::string> known_value(const CONFIGURATION& all, const std::string& key) {
    if (const auto set = all.set_by_program.find(key); set != all.set_by_program.end()) {
        return set->second;
    }
    if (auto value = environment_value(key)) {
        return value;
    }
    return all.files ? std::optional(value_of(*all.files, key)) : std::nullopt;
}

bool is_one_of(const std::string& value, const std::array<std::string_view, 4>& words) {
    return std::any_of(words.begin(), words.end(),
                       [&](const std::string_view word) { return gen_stricmp(value, word) == 0; });
}

constexpr std::array<std::string_view, 4> ON_WORDS{"on", "true", "yes", "1"};
constexpr std::array<std::string_view, 4> OFF_WORDS{"off", "false", "no", "0"};

}  // namespace

std::string cfg_get_value(const std::string& key) {
    CONFIGURATION& all = configuration();
    {
        const auto lock = all.mutex.lock_for_reading();
        if (auto value = known_value(all, key)) {
            return *std::move(value);
        }
    }
    const std::scoped_lock lock(all.mutex);
    if (auto value = known_value(all, key)) {  // another thread has read the files meanwhile
        return *std::move(value);
    }
    bool whole = false;
    CONFIGURATION_VALUES values = read_configuration_files(whole);
    if (!whole) {
        return value_of(values, key);  // the next look-up tries again
    }
    all.files = std::move(values);
    return value_of(*all.files, key);
}

ORVANE_BOOL cfg_is_on(const std::string& key, bool default_value) {
    const std::string value = cfg_get_value(key);
    const bool on = is_one_of(value, ON_WORDS) || (default_value && !is_one_of(value, OFF_WORDS));
    return on ? 1 : 0;
}

void cfg_set_value(const std::string& key, const std::string& value) {
    CONFIGURATION& all = configuration();
    const std::scoped_lock lock(all.mutex);
    all.set_by_program[key] = value;
}

void cfg_clear_value(const std::string& key) {
    CONFIGURATION& all = configuration();
    const std::scoped_lock lock(all.mutex);
    all.set_by_program.erase(key);
}

std::vector<std::string> cfg_get_file_paths() {
    const std::string named = environment_value("TESSARY_CONFIG_FILE").value_or("");
    if (!named.empty()) {
        return {named};
    }
    std::vector<std::string> paths;
    for (const std::filesystem::path& directory : configuration_directories()) {
        paths.push_back(utf8_from_path(directory / CONFIGURATION_FILE));
    }
    paths.push_back(utf8_from_path(path_from_utf8(gen_get_tessary_path()) / CONFIGURATION_FILE));
    return paths;
}

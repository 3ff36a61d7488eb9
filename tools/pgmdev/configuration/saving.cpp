#include "configuration/saving.h"

#include <fmt/core.h>

#include <algorithm>
#include <filesystem>
#include <string_view>

#include "configuration/file.h"
#include "file_kind.h"
#include "files/environment.h"
#include "files/output.h"
#include "fio.h"
#include "gen.h"
#include "terminal/failure.h"
#include "terminal/given_options.h"
#include "text_lines.h"

namespace {

struct LINE {
    std::string text;
    std::string end;  ///< "" for a last line without one
};

struct CONFIGURATION_LINES {
    bool exists = false;
    std::string beginning;  ///< a byte-order mark, or ""
    std::vector<LINE> lines;
};

std::vector<LINE> split_lines(std::string_view text) {
    std::vector<LINE> lines;
    while (!text.empty()) {
        const std::size_t feed = text.find('\n');
        const std::size_t size = feed == std::string_view::npos ? text.size() : feed + 1;
        const std::string_view whole = text.substr(0, size);
        const std::size_t end_size = whole.ends_with("\r\n") ? 2 : whole.ends_with('\n') ? 1 : 0;
        lines.push_back({std::string(whole.substr(0, size - end_size)), std::string(whole.substr(size - end_size))});
        text.remove_prefix(size);
    }
    return lines;
}

COMMAND_FAILURE unusable(const PLACE& place, const char* fault, const char* remedy) {
    return COMMAND_FAILURE({FAILURE_CODE::CONFIGURATION_UNREADABLE,
                            fmt::format("the configuration file {}, and is not changed", fault),
                            place.path,
                            place.tried,
                            fmt::format("{}, or name another one with TESSARY_CONFIG_FILE", remedy),
                            {}});
}

CONFIGURATION_LINES lines_of(const PLACE& place) {
    const CONFIGURATION_FILE contents = read_configuration_file(place.path);
    if (!contents.exists) {
        return {};
    }
    if (!contents.is_whole) {
        throw unusable(place, "cannot be read", "make it readable");
    }
    if (is_utf_16(contents.text)) {
        throw unusable(place, "is UTF-16", "save it as UTF-8");
    }
    const std::string_view text = without_byte_order_mark(contents.text);
    return {true, contents.text.substr(0, contents.text.size() - text.size()), split_lines(text)};
}

/// As the host reads lines.
bool sets(const LINE& line, const std::string& key) {
    const std::size_t equals = line.text.find('=');
    return equals != std::string::npos &&
           gen_remove_leading_and_trailing_white_spaces(line.text.substr(0, equals)) == key;
}

bool has_key(const CONFIGURATION_LINES& file, const std::string& key) {
    return std::any_of(file.lines.begin(), file.lines.end(), [&key](const LINE& line) { return sets(line, key); });
}

/// The user's own; the last one is that of the installation.
std::size_t own_file(const std::vector<CONFIGURATION_LINES>& files) {
    return files.size() > 1 ? files.size() - 2 : 0;
}

/// The file to write: of those that have the key, or else exist, the one that wins; or else the user's own.
std::size_t file_in_use(const std::vector<CONFIGURATION_LINES>& files, const std::string& key) {
    for (std::size_t i = files.size(); i-- > 0;) {
        if (has_key(files[i], key)) {
            return i;
        }
    }
    for (std::size_t i = files.size(); i-- > 0;) {
        if (files[i].exists) {
            return i;
        }
    }
    return own_file(files);
}

/// Puts the setting in place of the last line that sets the key: that one counts.
void put(CONFIGURATION_LINES& file, const std::string& key, const std::string& value) {
    const std::string text = key + " = " + value;
    const auto last =
        std::find_if(file.lines.rbegin(), file.lines.rend(), [&key](const LINE& line) { return sets(line, key); });
    if (last != file.lines.rend()) {
        last->text = text;
        return;
    }
    const std::string end = file.lines.empty() || file.lines.front().end.empty() ? "\n" : file.lines.front().end;
    if (!file.lines.empty() && file.lines.back().end.empty()) {
        file.lines.back().end = end;
    }
    file.lines.push_back({text, end});
}

/// Replaces the file by its lines with the setting.
void write_with(const PLACE& place, CONFIGURATION_LINES file, const std::string& key, const std::string& value) {
    put(file, key, value);
    std::vector<BYTE> contents(file.beginning.begin(), file.beginning.end());
    for (const LINE& line : file.lines) {
        contents.insert(contents.end(), line.text.begin(), line.text.end());
        contents.insert(contents.end(), line.end.begin(), line.end.end());
    }
    std::error_code error;  // what keeps the directory from being made keeps the file from being written
    make_directories(fio_get_unc_full_path(place.path).parent_path(), error);
    OUTPUT_FILE output(place);
    output.write(contents);
    output.commit();
}

}  // namespace

SAVED_SETTING save_setting(const std::string& key, const std::string& value) {
    const std::vector<PLACE> places = configuration_places();
    std::vector<CONFIGURATION_LINES> files;
    files.reserve(places.size());
    for (const PLACE& place : places) {
        files.push_back(lines_of(place));
    }
    const std::size_t chosen = file_in_use(files, key);
    const std::size_t own = own_file(files);
    try {
        write_with(places[chosen], files[chosen], key, value);
        return {places[chosen], ""};
    } catch (const COMMAND_FAILURE& failure) {
        const bool outweighs = chosen > own && has_key(files[chosen], key);
        if (chosen == own || outweighs || failure.failure().code != FAILURE_CODE::OUTPUT_NOT_WRITABLE) {
            throw;
        }
        write_with(places[own], files[own], key, value);
        return {places[own], fmt::format("{}: {}", places[chosen].path, failure.failure().message)};
    }
}

std::string outweighed_by(const std::string& key) {
    for (const std::string& assignment : given_values("--set")) {
        if (assignment.starts_with(key + "=")) {
            return "option --set";
        }
    }
    return environment_text(key).empty() ? "" : fmt::format("environment variable {}", key);
}

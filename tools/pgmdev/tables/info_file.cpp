#include "tables/info_file.h"

#include <fmt/core.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <string_view>
#include <variant>

#include "files/file_bytes.h"
#include "fio.h"
#include "pgmdev_version.h"
#include "printable_text.h"
#include "terminal/schema.h"
#include "utf8_path.h"

namespace {

/// A line of the text.
struct INFO_KEY {
    const char* name;
    std::variant<std::string DATABASE_INFO::*, QWORD DATABASE_INFO::*> field;
};

/// The keys that every text has.
constexpr std::array<INFO_KEY, 7> KEYS{{
    {"database", &DATABASE_INFO::database},
    {"database_sha256", &DATABASE_INFO::database_sha256},
    {"source", &DATABASE_INFO::source},
    {"source_sha256", &DATABASE_INFO::source_sha256},
    {"records", &DATABASE_INFO::records},
    {"payload_size", &DATABASE_INFO::payload_size},
    {"compiled_by", &DATABASE_INFO::compiled_by},
}};

/// In one line: a name with a line feed must not make keys of its own.
std::string file_name_of(const std::string& path) {
    return printable(utf8_from_path(path_from_utf8(path).filename()));
}

bool take(std::string_view text, std::string& value) {
    value = text;
    return !text.empty();
}

bool take(std::string_view text, QWORD& value) {
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    return error == std::errc() && end == text.data() + text.size();
}

/// Reads a text. Keys that are not known are left to those who know them; false when one is missing or has no value.
bool parse(const std::string& info_text, DATABASE_INFO& info) {
    std::size_t taken = 0;
    for_each_info_value(info_text, [&](std::string_view name, std::string_view text) {
        if (name == REPLACED_DIGEST_KEY) {
            info.replaces_sha256 = text;
        }
        const auto* const key =
            std::find_if(KEYS.begin(), KEYS.end(), [&](const INFO_KEY& candidate) { return name == candidate.name; });
        if (key != KEYS.end()) {
            taken += std::visit([&](auto field) { return take(text, info.*field); }, key->field) ? 1U : 0U;
        }
    });
    return taken == KEYS.size();
}

}  // namespace

DATABASE_INFO database_info(const std::string& database, std::span<const BYTE> database_bytes,
                            const std::string& source, std::span<const BYTE> source_bytes, QWORD records,
                            QWORD payload_size) {
    return {file_name_of(database),
            sha256_of(database_bytes),
            file_name_of(source),
            sha256_of(source_bytes),
            records,
            payload_size,
            "pgmdev " + PGMDEV_VERSION::library(),
            ""};
}

std::string info_text(const DATABASE_INFO& info) {
    std::string text;
    for (const INFO_KEY& key : KEYS) {
        text += std::visit([&](auto field) { return fmt::format("{} = {}\n", key.name, info.*field); }, key.field);
    }
    return text +
           (info.replaces_sha256.empty() ? "" : fmt::format("{} = {}\n", REPLACED_DIGEST_KEY, info.replaces_sha256));
}

INFO_FINDING check_info(const std::string& database) {
    const std::string path = info_file_of(database);
    const FILE_WITH_INFO both = read_with_info(fio_get_unc_full_path(FIO_PATH(database).fullpath()),
                                               fio_get_unc_full_path(FIO_PATH(path).fullpath()));
    INFO_FINDING finding;
    if (both.info_result == READ_RESULT::ABSENT) {
        finding.message = path + " does not exist";
        return finding;
    }
    if (both.info_result != READ_RESULT::READ || both.file_result != READ_RESULT::READ ||
        !parse(both.info, finding.info)) {
        finding.state = INFO_STATE::UNREADABLE;
        finding.message = both.info_result != READ_RESULT::READ   ? path + " cannot be read"
                          : both.file_result != READ_RESULT::READ ? database + " cannot be read"
                                                                  : path + " is damaged: compile the database again";
        return finding;
    }
    const std::string found = sha256_of(both.file_bytes());
    finding.state = judge_info(both.info, DATABASE_DIGEST_KEY, found);
    if (finding.state == INFO_STATE::MATCHES) {
        finding.message = fmt::format("compiled from {} by {}", finding.info.source, finding.info.compiled_by);
    } else if (finding.state == INFO_STATE::OLDER) {
        finding.message = fmt::format("the database from before compiling {} was interrupted", finding.info.source);
    } else {
        finding.message = fmt::format("the SHA-256 is {}, {} states {}", found, path, finding.info.database_sha256);
    }
    return finding;
}

JSON info_json(const DATABASE_INFO& info) {
    JSON object = JSON::object();
    for (const INFO_KEY& key : KEYS) {
        std::visit([&](auto field) { object[key.name] = info.*field; }, key.field);
    }
    return object;
}

JSON info_schema() {
    std::vector<SCHEMA_MEMBER> members;
    members.reserve(std::size(KEYS));
    for (const INFO_KEY& key : KEYS) {
        members.push_back({key.name, std::visit([](auto field) { return schema_of_field(field); }, key.field)});
    }
    return object_schema(members);
}

#include "tables/accepted_warnings.h"

#include <fmt/core.h>

#include <algorithm>
#include <optional>
#include <string_view>

#include "files/file_bytes.h"
#include "files/inspection.h"
#include "gen.h"
#include "terminal/schema.h"
#include "terminal/standard_error.h"
#include "text_lines.h"
#include "utf_8_input.h"

namespace {

constexpr const char* WHITE_SPACE = " \t\r";
constexpr const char* ANY = "*";
constexpr const char* NONE = "-";

/// Takes the first word off a text, or what stands in quotation marks.
std::string take_word(std::string& text) {
    text = gen_remove_leading_and_trailing_white_spaces(text);
    const bool quoted = !text.empty() && text.front() == '"' && text.find('"', 1) != std::string::npos;
    const std::size_t begin = quoted ? 1 : 0;
    const std::size_t end = std::min(quoted ? text.find('"', 1) : text.find_first_of(WHITE_SPACE), text.size());
    std::string word = text.substr(begin, end - begin);
    text.erase(0, end + begin);
    return word;
}

std::optional<ACCEPTED_WARNING> parse(std::string text, std::size_t line, std::string why) {
    ACCEPTED_WARNING entry;
    entry.line = line;
    entry.row = take_word(text);
    entry.member = take_word(text);
    entry.text = gen_remove_leading_and_trailing_white_spaces(text);
    entry.why = gen_remove_leading_and_trailing_white_spaces(why);
    return entry.text.empty() ? std::nullopt : std::optional(entry);
}

/// How an entry spells a row or a member.
std::string word_for(const std::string& name) {
    return name.empty() ? NONE : name;
}

}  // namespace

ACCEPTED_WARNINGS read_accepted_warnings(const std::string& csv_file) {
    ACCEPTED_WARNINGS accepted;
    const std::string path = csv_file + ".accepted";
    if (inspect_file(path, 0).missing) {
        return accepted;
    }
    accepted.file = path;
    const std::vector<BYTE> bytes = required_file_bytes(path);
    const auto contents = as_utf_8(std::string(bytes.begin(), bytes.end()));
    if (!contents) {
        throw unreadable_file(path, MALFORMED_UTF_16);
    }
    std::size_t number = 0;
    for_each_line(without_byte_order_mark(*contents), [&](std::string_view line) {
        ++number;
        const std::size_t comment = std::min(line.find('#'), line.size());
        const std::string text = gen_remove_leading_and_trailing_white_spaces(std::string(line.substr(0, comment)));
        if (text.empty()) {
            return;
        }
        if (auto entry = parse(text, number, std::string(comment < line.size() ? line.substr(comment + 1) : ""))) {
            accepted.by_row_and_member[{entry->row, entry->member}].push_back(accepted.entries.size());
            accepted.entries.push_back(std::move(*entry));
        } else {
            accepted.malformed.push_back(number);
        }
    });
    return accepted;
}

const ACCEPTED_WARNING* accept_warning(ACCEPTED_WARNINGS& accepted, const PGMDEV_TABLE_FAULT& fault) {
    if (fault.severity != PGMDEV_TABLE_FAULT::SEVERITY::WARNING) {
        return nullptr;
    }
    const auto places = accepted.by_row_and_member.find({word_for(fault.row), word_for(fault.member)});
    if (places == accepted.by_row_and_member.end()) {
        return nullptr;
    }
    for (const std::size_t place : places->second) {
        ACCEPTED_WARNING& entry = accepted.entries[place];
        if (entry.text == ANY || entry.text == fault.expected) {
            entry.used = true;
            return &entry;
        }
    }
    return nullptr;
}

std::vector<ACCEPTED_WARNING> unused_entries(const ACCEPTED_WARNINGS& accepted) {
    std::vector<ACCEPTED_WARNING> unused;
    std::copy_if(accepted.entries.begin(), accepted.entries.end(), std::back_inserter(unused),
                 [](const ACCEPTED_WARNING& entry) { return !entry.used; });
    return unused;
}

JSON unused_json(const std::vector<ACCEPTED_WARNING>& entries) {
    JSON array = JSON::array();
    for (const ACCEPTED_WARNING& entry : entries) {
        array.push_back({{"line", entry.line},
                         {"row", entry.row},
                         {"member", entry.member},
                         {"text", entry.text},
                         {"why", entry.why}});
    }
    return array;
}

JSON unused_schema() {
    return object_schema({{"line", number_schema()},
                          {"row", text_schema()},
                          {"member", text_schema()},
                          {"text", text_schema()},
                          {"why", text_schema()}});
}

void print_leftovers(const ACCEPTED_WARNINGS& accepted, const std::vector<ACCEPTED_WARNING>& unused) {
    for (const std::size_t line : accepted.malformed) {
        print_error("{}:{}: fault: expected ROW MEMBER TEXT # WHY, or * for any text", accepted.file, line);
    }
    for (const ACCEPTED_WARNING& entry : unused) {
        print_error("{}:{}: warning: not used: there is no such warning: {} {} {}", accepted.file, entry.line,
                    entry.row, entry.member, entry.text);
    }
}

#include "flash/evidence.h"

#include <fmt/core.h>

#include <array>
#include <map>
#include <set>
#include <utility>

#include "tables/notes_files.h"
#include "terminal/printable.h"

namespace {

constexpr std::array GROUPS{"identification", "geometry", "voltage", "opcodes", "protection", "times"};

/// An object that has, for each group of the list, what `group` describes.
JSON groups_schema(const JSON& group) {
    std::vector<SCHEMA_MEMBER> members;
    members.reserve(GROUPS.size());
    for (const char* name : GROUPS) {
        members.push_back({name, group, false});
    }
    return object_schema(members);
}

/// Adds what is wrong with what supports a row. The number of the line that does; 0: none.
std::size_t check(const FLASH_EVIDENCE& evidence, const PGMDEV_SFL_FLASH_INFO& record,
                  std::vector<PGMDEV_TABLE_FAULT>& faults) {
    const FLASH_EVIDENCE::KEY key = FLASH_EVIDENCE::key_of(record);
    const auto [number, cells] = evidence.line_of(key);
    if (number == 0) {
        faults.push_back(
            list_fault(record.device_name,
                       fmt::format("what supports the row: a line {},{},... in sources.csv", key.first, key.second)));
        return number;
    }
    for (std::size_t i = 0; i < cells.size(); ++i) {
        const std::string& cell = cells[i];
        const bool family = evidence_in_words(cell) == evidence_in_words("family");
        if (evidence_in_words(cell).empty() || family != evidence_sources(cell).empty()) {
            faults.push_back(list_fault(record.device_name,
                                        fmt::format("for {} in line {} of sources.csv, not \"{}\": datasheet, sfdp, "
                                                    "two or one, with a colon and the sources, or family",
                                                    evidence.groups()[i], number, cell)));
        }
    }
    return number;
}

/// Adds lines of the list that have too few or too many cells.
void check_form(const CSV_LINES& list, std::vector<PGMDEV_TABLE_FAULT>& faults) {
    for (const CSV_LINE& line : list.lines()) {
        if (list.cells_of(line).empty()) {
            faults.push_back(
                list_fault("", fmt::format("as many cells in line {} of sources.csv as in its first", line.number)));
        }
    }
}

/// Warns of lines that no row was looked up in.
void check_use(const CSV_LINES& list, const std::set<std::size_t>& used_lines,
               std::vector<PGMDEV_TABLE_FAULT>& faults) {
    for (const CSV_LINE& line : list.lines()) {
        if (list.has_all_cells(line) && !used_lines.contains(line.number)) {
            faults.push_back(list_fault(
                std::string(line.first),
                fmt::format("line {} of sources.csv supports no row, or a later one is the same row's", line.number),
                PGMDEV_TABLE_FAULT::SEVERITY::WARNING));
        }
    }
}

/// How many rows have a group supported by a class.
using COUNTS = std::map<std::pair<std::string, std::string>, std::size_t>;

void tell_shares(const std::string& group, const COUNTS& counts, TABLE_SUPPORT& support) {
    JSON classes = JSON::object();
    std::string text;
    for (const auto& entry : FLASH_EVIDENCE_CLASSES) {
        const auto found = counts.find({group, entry.second});
        const std::size_t count = found != counts.end() ? found->second : 0;
        classes[entry.second] = count;
        text += count == 0 ? "" : fmt::format("{}{} {}", text.empty() ? "" : ", ", count, entry.second);
    }
    support.shares[group] = classes;
    support.lines.push_back(fmt::format("{}: {}", group, text));
}

}  // namespace

TABLE_SUPPORT support_of(const FLASH_EVIDENCE& evidence, const std::vector<PGMDEV_SFL_FLASH_INFO>& records) {
    TABLE_SUPPORT support;
    support.is_there = !evidence.groups().empty();
    if (!support.is_there) {
        return support;
    }
    check_form(evidence.list(), support.faults);
    std::set<std::size_t> used_lines;
    COUNTS counts;
    for (const PGMDEV_SFL_FLASH_INFO& record : records) {
        used_lines.insert(check(evidence, record, support.faults));
        for (const FLASH_SUPPORT& group : evidence.of(record)) {
            ++counts[{group.group, group.evidence}];
        }
    }
    if (!records.empty()) {  // otherwise the form of the table has faults
        check_use(evidence.list(), used_lines, support.faults);
    }
    for (const std::string& group : evidence.groups()) {
        tell_shares(group, counts, support);
    }
    return support;
}

JSON support_json(const std::vector<FLASH_SUPPORT>& support) {
    JSON object = JSON::object();
    for (const FLASH_SUPPORT& group : support) {
        object[group.group] = {{"evidence", group.evidence}, {"sources", group.sources}};
    }
    return object;
}

JSON support_schema() {
    return groups_schema(object_schema({{"evidence", text_schema()}, {"sources", array_schema(text_schema())}}));
}

JSON shares_schema() {
    std::vector<SCHEMA_MEMBER> classes;
    classes.reserve(FLASH_EVIDENCE_CLASSES.size());
    for (const auto& entry : FLASH_EVIDENCE_CLASSES) {
        classes.push_back({entry.second, number_schema()});
    }
    return groups_schema(object_schema(classes));
}

void print_support(const std::vector<FLASH_SUPPORT>& support) {
    const char* label = "evidence";
    for (const FLASH_SUPPORT& group : support) {
        std::string sources;
        for (const std::string& source : group.sources) {
            sources += (sources.empty() ? " (" : ", ") + source;
        }
        fmt::print("{:<20}  {}: {}{}\n", label, printable(group.group), group.evidence,
                   sources.empty() ? "" : printable(sources) + ")");
        label = "";
    }
}

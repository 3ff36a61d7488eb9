#include "flash/evidence.h"

#include <fmt/core.h>

#include <algorithm>
#include <array>
#include <map>
#include <set>
#include <sstream>

#include "tables/notes_files.h"

namespace {

constexpr std::array<std::pair<const char*, const char*>, 5> CLASSES{{
    {"datasheet", "datasheet maximum"},
    {"sfdp", "chip's own SFDP"},
    {"two", "two independent public sources"},
    {"one", "one public source"},
    {"family", "family rule"},
}};
constexpr std::array GROUPS{"identification", "geometry", "voltage", "opcodes", "protection", "times"};
constexpr std::size_t KEY_CELLS = 2;  // device_name, compared

/// A class in words; "" for a word that is none.
std::string class_in_words(const std::string& cell) {
    const std::string word = cell.substr(0, cell.find(':'));
    const auto found =
        std::find_if(CLASSES.begin(), CLASSES.end(), [&word](auto entry) { return word == entry.first; });
    return found != CLASSES.end() ? found->second : "";
}

std::vector<std::string> sources_of(const std::string& cell) {
    std::vector<std::string> sources;
    const std::size_t colon = cell.find(':');
    std::istringstream keys(colon == std::string::npos ? "" : cell.substr(colon + 1));
    keys.exceptions(std::ios::badbit);  // a failing allocation is not the end
    for (std::string key; std::getline(keys, key, '+');) {
        sources.push_back(key);
    }
    return sources;
}

/// An object that has, for each group of the list, what `group` describes.
JSON groups_schema(const JSON& group) {
    std::vector<SCHEMA_MEMBER> members;
    members.reserve(GROUPS.size());
    for (const char* name : GROUPS) {
        members.push_back({name, group, false});
    }
    return object_schema(members);
}

}  // namespace

FLASH_EVIDENCE::FLASH_EVIDENCE(const std::string& path) : m_list(path) {
    if (m_list.names().size() > KEY_CELLS) {
        m_groups.assign(m_list.names().begin() + KEY_CELLS, m_list.names().end());
    }
}

FLASH_EVIDENCE::KEY FLASH_EVIDENCE::key_of(const PGMDEV_SFL_FLASH_INFO& record) {
    std::string compared = record.silicon_id ? "silicon" : "";
    const auto add = [&compared](BYTE value, BYTE index) {
        if (index != PGMDEV_SFL_FLASH_INFO::NONE) {
            compared += fmt::format("{}{:02X}@{}", compared.empty() ? "" : " ", value, index);
        }
    };
    add(record.memory_id, record.memory_id_index);
    add(record.memory_type, record.memory_type_index);
    add(record.mfc_id, record.mfc_id_index);
    return {record.device_name, compared};
}

FLASH_EVIDENCE::EVIDENCE_LINE FLASH_EVIDENCE::line_of(const KEY& key) const {
    EVIDENCE_LINE found;
    for (const CSV_LINE& line : m_list.lines_of(key.first)) {
        std::vector<std::string> cells = m_list.cells_of(line);
        if (cells.size() > KEY_CELLS && cells[1] == key.second) {
            found = {line.number, {cells.begin() + KEY_CELLS, cells.end()}};
        }
    }
    return found;
}

std::vector<FLASH_SUPPORT> FLASH_EVIDENCE::of(const PGMDEV_SFL_FLASH_INFO& record) const {
    std::vector<FLASH_SUPPORT> support;
    const std::vector<std::string> cells = line_of(key_of(record)).cells;
    for (std::size_t i = 0; i < cells.size(); ++i) {
        support.push_back({m_groups[i], class_in_words(cells[i]), sources_of(cells[i])});
    }
    return support;
}

std::size_t FLASH_EVIDENCE::check(const PGMDEV_SFL_FLASH_INFO& record, std::vector<PGMDEV_TABLE_FAULT>& faults) const {
    const KEY key = key_of(record);
    const auto [number, cells] = line_of(key);
    if (number == 0) {
        faults.push_back(
            list_fault(record.device_name,
                       fmt::format("what supports the row: a line {},{},... in sources.csv", key.first, key.second)));
        return number;
    }
    for (std::size_t i = 0; i < cells.size(); ++i) {
        const std::string& cell = cells[i];
        const bool family = class_in_words(cell) == class_in_words("family");
        if (class_in_words(cell).empty() || family != sources_of(cell).empty()) {
            faults.push_back(list_fault(record.device_name,
                                        fmt::format("for {} in line {} of sources.csv, not \"{}\": datasheet, sfdp, "
                                                    "two or one, with a colon and the sources, or family",
                                                    m_groups[i], number, cell)));
        }
    }
    return number;
}

TABLE_SUPPORT FLASH_EVIDENCE::support_of(const std::vector<PGMDEV_SFL_FLASH_INFO>& records) const {
    TABLE_SUPPORT support;
    support.is_there = !m_groups.empty();
    if (!support.is_there) {
        return support;
    }
    for (const CSV_LINE& line : m_list.lines()) {
        if (m_list.cells_of(line).empty()) {
            support.faults.push_back(
                list_fault("", fmt::format("as many cells in line {} of sources.csv as in its first", line.number)));
        }
    }
    std::set<std::size_t> looked_at;                                    // lines
    std::map<std::pair<std::string, std::string>, std::size_t> counts;  // group and class
    for (const PGMDEV_SFL_FLASH_INFO& record : records) {
        looked_at.insert(check(record, support.faults));
        for (const FLASH_SUPPORT& group : of(record)) {
            ++counts[{group.group, group.evidence}];
        }
    }
    for (const CSV_LINE& line : m_list.lines()) {
        // Without records, the form of the table has faults.
        if (!records.empty() && m_list.has_all_cells(line) && !looked_at.contains(line.number)) {
            support.faults.push_back(list_fault(
                std::string(line.first),
                fmt::format("line {} of sources.csv supports no row, or a later one is the same row's", line.number),
                PGMDEV_TABLE_FAULT::SEVERITY::WARNING));
        }
    }
    for (const std::string& group : m_groups) {
        JSON classes = JSON::object();
        std::string text;
        for (const auto& entry : CLASSES) {
            const std::size_t count = counts[{group, entry.second}];
            classes[entry.second] = count;
            text += count == 0 ? "" : fmt::format("{}{} {}", text.empty() ? "" : ", ", count, entry.second);
        }
        support.shares[group] = classes;
        support.lines.push_back(fmt::format("{}: {}", group, text));
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
    classes.reserve(CLASSES.size());
    for (const auto& entry : CLASSES) {
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
        fmt::print("{:<20}  {}: {}{}\n", label, group.group, group.evidence, sources.empty() ? "" : sources + ")");
        label = "";
    }
}

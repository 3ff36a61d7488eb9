#include <algorithm>
#include <array>
#include <string_view>

#include "catalog_reader.h"
#include "dstr.h"
#include "name_pattern.h"

namespace {

/// What stands for nothing in a column.
constexpr std::string_view NOTHING = "-";
constexpr std::string_view HIDDEN = "hidden";

/// Lists by part number take memory for all numbers below. Higher ones, and more further names of parts, are slips of
/// the pen.
constexpr int MAX_PART_NUMBER = 2000000;
constexpr std::size_t MAX_ALIASES = 500;
constexpr std::size_t MAX_PARTS_OF_LINE = 65000;

struct STATUS {
    std::string_view name;
    bool production;
};

constexpr std::array<STATUS, 4> STATUSES{
    {{"production", true}, {"sample", false}, {"announced", false}, {"discontinued", false}}};

}  // namespace

void CATALOG_READER::read_devices(const std::filesystem::path& path) {
    for (const SOURCE_ROW& row : read_rows(path, m_faults)) {
        const std::string& keyword = row.cells[0];
        if (keyword == "device") {
            read_device(row);
        } else if (keyword == "parts") {
            read_parts(row);
        } else if (keyword == "alias") {
            read_alias(row);
        } else {
            m_faults.add(row.place, R"(a line begins with "device", "parts" or "alias", not with ")" + keyword + "\"");
        }
    }
}

void CATALOG_READER::read_device(const SOURCE_ROW& row) {
    m_in_device = false;
    if (!has_columns(row, "device NUMBER NAME FAMILY PROGRAMMER-PART", m_faults)) {
        return;
    }
    const auto number = read_number(row, 1, "device number", 1, DEV_DEVICE_GENERIC - 1, m_faults,
                                    ": for more, raise DEV_DEVICE_GENERIC and DEV_DEVICE_MAX in host/h/dstr.h");
    const auto family = m_family_names.find(row.cells[3], row.place, m_faults);
    const bool programmable = row.cells[4] != NOTHING;
    const bool named = check(row, 2, "device") && (!programmable || check(row, 4, "programmer part"));
    if (!number || !family || !named ||
        !m_device_names.add(row.cells[2], m_catalog.devices.size(), row.place, m_faults)) {
        return;
    }
    require_ascending(row.place, "device number", *number, m_previous_device);
    m_in_device = true;
    m_catalog.devices.push_back(
        {row.place, *number, row.cells[2], *family, programmable ? upper_case(row.cells[4]) : ""});
}

std::vector<std::string> CATALOG_READER::read_pattern(const SOURCE_ROW& row, std::size_t cell) {
    std::vector<std::string> names;
    const std::string fault = expand_pattern(row.cells[cell], names);
    if (!fault.empty()) {
        m_faults.add(row.place, fault);
    }
    return names;
}

std::vector<CATALOG_READER::COMPLETION> CATALOG_READER::read_completions(const SOURCE_ROW& row, std::size_t cell,
                                                                         const NAME_REGISTRY& codes) {
    std::vector<COMPLETION> completions;
    for (const std::string& item : split_list(row.cells[cell])) {
        const bool silent = item.size() > 2 && item.front() == '(' && item.back() == ')';
        const std::string code = silent ? item.substr(1, item.size() - 2) : item;
        if (const auto index = codes.find(code, row.place, m_faults)) {
            completions.push_back({*index, silent ? "" : code});
        }
    }
    return completions;
}

bool CATALOG_READER::read_status(const SOURCE_ROW& row, CATALOG_PART& part) {
    std::vector<std::string> words = split_list(row.cells[5]);
    if (words.size() == 2 && words[1] == HIDDEN) {
        part.hidden = true;
        words.pop_back();
    }
    const auto status = std::find_if(STATUSES.begin(), STATUSES.end(),
                                     [&](const STATUS& candidate) { return candidate.name == words[0]; });
    if (words.size() != 1 || status == STATUSES.end()) {
        m_faults.add(row.place, "status \"" + row.cells[5] +
                                    "\" is not production, sample, announced or discontinued, followed by \",hidden\" "
                                    "or nothing");
        return false;
    }
    part.status = status->name;
    part.production = status->production;
    return true;
}

void CATALOG_READER::read_parts(const SOURCE_ROW& row) {
    if (!has_columns(row, "parts FIRST-NUMBER NAMES PACKAGES GRADES STATUS", m_faults)) {
        return;
    }
    CATALOG_PART part;
    part.place = row.place;
    const bool numbered = row.cells[1] != NOTHING;
    const auto first = numbered ? read_number(row, 1, "part number", 1, MAX_PART_NUMBER, m_faults) : std::optional(0);
    const std::vector<std::string> names = read_pattern(row, 2);
    const std::vector<COMPLETION> packages = read_completions(row, 3, m_package_codes);
    const std::vector<COMPLETION> grades = read_completions(row, 4, m_grade_codes);
    const bool has_status = read_status(row, part);
    if (!m_in_device) {
        m_faults.add(row.place, "belongs to no device: a correct \"device\" line must come before it");
        return;
    }
    if (!first || !has_status) {
        return;
    }
    if (names.size() * packages.size() * grades.size() > MAX_PARTS_OF_LINE) {
        m_faults.add(row.place, "stands for more parts than a line may have, " + std::to_string(MAX_PARTS_OF_LINE));
        return;
    }
    part.device = m_catalog.devices.size() - 1;
    part.number = *first;
    for (const std::string& name : names) {
        part.programming_name = name;
        for (const COMPLETION& package : packages) {
            part.package = package.index;
            part.package_name = name + package.text;
            for (const COMPLETION& grade : grades) {
                part.grade = grade.index;
                part.name = part.package_name + grade.text;
                add_part(part);
                part.number += numbered ? 1 : 0;
            }
        }
    }
}

void CATALOG_READER::add_part(CATALOG_PART part) {
    if (!check_name(part.place, part.name, "ordering name", m_faults) ||
        !check_name(part.place, part.programming_name, "programming name", m_faults) ||
        !check_name(part.place, part.package_name, "package name", m_faults) ||
        !m_ordering_names.is_free(part.name, part.place, m_faults)) {
        return;
    }
    if (part.number > MAX_PART_NUMBER) {
        m_faults.add(part.place, "part number " + std::to_string(part.number) + " is above the highest possible, " +
                                     std::to_string(MAX_PART_NUMBER));
        return;
    }
    if (part.number != 0) {
        const auto number = static_cast<std::size_t>(part.number);
        m_part_places.resize(std::max(m_part_places.size(), number + 1));
        SOURCE_PLACE& place = m_part_places[number];
        if (place.line != 0) {
            m_faults.add(part.place, "part number " + std::to_string(part.number) + " of \"" + part.name +
                                         "\" is already given at " + text_of(place));
            return;
        }
        place = part.place;
    }
    // Only now, for others find the part by its name: what is refused has none.
    m_ordering_names.add(part.name, m_catalog.parts.size(), part.place, m_faults);
    m_catalog.last_part = std::max(m_catalog.last_part, part.number);
    m_catalog.parts.push_back(std::move(part));
}

void CATALOG_READER::read_alias(const SOURCE_ROW& row) {
    if (!has_columns(row, "alias NAME PART", m_faults) || !check(row, 1, "alias")) {
        return;
    }
    const auto part = m_ordering_names.find(row.cells[2], row.place, m_faults);
    if (!part || !m_ordering_names.add(row.cells[1], *part, row.place, m_faults)) {
        return;
    }
    if (m_catalog.parts[*part].number == 0) {
        m_faults.add(row.place, "\"" + row.cells[2] + "\" has no part number and so cannot have an alias");
    } else if (m_catalog.aliases.size() == MAX_ALIASES) {
        m_faults.add(row.place, "more than " + std::to_string(MAX_ALIASES) + " aliases");
    } else {
        m_catalog.aliases.push_back({row.place, row.cells[1], *part});
    }
}

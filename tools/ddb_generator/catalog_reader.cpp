#include "catalog_reader.h"

#include <algorithm>

#include "dstr.h"

namespace {

/// The tables behind the device library number packages and grades in one byte.
constexpr std::size_t MAX_CODES = 255;
constexpr int MAX_PINS = 100000;

/// A longer list of ordering codes is a slip of the pen.
constexpr int MAX_ORDERING_ENTRIES = 1 << 24;
constexpr const char* RAISE_ENTRIES = ": for more, raise \"entries\"";

}  // namespace

CATALOG read_catalog(const std::filesystem::path& directory, FAULTS& faults) {
    CATALOG_READER reader(faults);
    reader.read_families(directory / "families.txt");
    reader.read_packages(directory / "packages.txt");
    reader.read_grades(directory / "grades.txt");
    reader.read_devices(directory / "devices.txt");
    reader.read_ordering_codes(directory / "ordering-codes.txt");
    return reader.take();
}

void CATALOG_READER::require_ascending(const SOURCE_PLACE& place, const char* what, int number, int& previous) {
    if (number <= previous) {
        m_faults.add(place, std::string(what) + " " + std::to_string(number) + " comes after " +
                                std::to_string(previous) + ": keep the file sorted");
    }
    previous = number;
}

void CATALOG_READER::read_families(const std::filesystem::path& path) {
    int previous = 0;
    for (const SOURCE_ROW& row : read_rows(path, m_faults)) {
        if (!has_columns(row, "NUMBER NAME PROGRAMMER-FAMILY", m_faults)) {
            continue;
        }
        const auto number = read_number(row, 0, "family number", 1, DEV_FAMILY_GENERIC - 1, m_faults,
                                        ": for more, raise DEV_FAMILY_GENERIC and DEV_FAMILY_MAX in host/h/dstr.h");
        const std::string& programmer_family = row.cells[2];
        const bool named = check(row, 1, "family") &&
                           (programmer_family == NO_PROGRAMMER_FAMILY || check(row, 2, "programmer family"));
        if (!number || !named || !m_family_names.add(row.cells[1], m_catalog.families.size(), row.place, m_faults)) {
            continue;
        }
        require_ascending(row.place, "family number", *number, previous);
        m_catalog.families.push_back({row.place, *number, row.cells[1], upper_case(programmer_family)});
    }
}

void CATALOG_READER::read_packages(const std::filesystem::path& path) {
    for (const SOURCE_ROW& row : read_rows(path, m_faults)) {
        if (!has_columns(row, "CODE TYPE PINS", m_faults)) {
            continue;
        }
        const auto pins = read_number(row, 2, "number of pins", 1, MAX_PINS, m_faults);
        if (check(row, 0, "package") && check(row, 1, "package type") && pins &&
            m_package_codes.add(row.cells[0], m_catalog.packages.size(), row.place, m_faults)) {
            m_catalog.packages.push_back({row.cells[0], row.cells[1], std::to_string(*pins)});
        }
    }
    if (m_catalog.packages.size() > MAX_CODES) {
        m_faults.add({path.generic_string()}, "has more than " + std::to_string(MAX_CODES) + " packages");
    }
}

void CATALOG_READER::read_grades(const std::filesystem::path& path) {
    for (const SOURCE_ROW& row : read_rows(path, m_faults)) {
        if (has_columns(row, "CODE SPEED TEMPERATURE", m_faults) && check(row, 0, "grade") &&
            check(row, 1, "speed grade") && check(row, 2, "temperature grade") &&
            m_grade_codes.add(row.cells[0], m_catalog.grades.size(), row.place, m_faults)) {
            m_catalog.grades.push_back({row.cells[0], row.cells[1], row.cells[2]});
        }
    }
    if (m_catalog.grades.size() > MAX_CODES) {
        m_faults.add({path.generic_string()}, "has more than " + std::to_string(MAX_CODES) + " grades");
    }
}

void CATALOG_READER::read_ordering_codes(const std::filesystem::path& path) {
    const std::vector<SOURCE_ROW> rows = read_rows(path, m_faults);
    if (rows.empty()) {
        m_faults.add({path.generic_string()}, "has no line \"entries COUNT\"");
        return;
    }
    if (!read_ordering_entries(rows.front())) {
        return;  // without it no index can be judged
    }
    std::for_each(rows.begin() + 1, rows.end(), [this](const SOURCE_ROW& row) {
        if (has_columns(row, "INDEX NAMES", m_faults)) {
            read_ordering_code(row);
        }
    });
}

bool CATALOG_READER::read_ordering_entries(const SOURCE_ROW& row) {
    if (!has_columns(row, "entries COUNT", m_faults)) {
        return false;
    }
    if (row.cells[0] != "entries") {
        m_faults.add(row.place, "expected \"entries\" and the length of the list before the first code");
        return false;
    }
    const auto count = read_number(row, 1, "length of the list", 1, MAX_ORDERING_ENTRIES, m_faults);
    m_catalog.ordering_entries = count.value_or(0);
    return count.has_value();
}

void CATALOG_READER::read_ordering_code(const SOURCE_ROW& row) {
    const int last = m_catalog.ordering_entries - 1;
    const auto first_index = read_number(row, 0, "ordering-code index", 0, last, m_faults, RAISE_ENTRIES);
    if (!first_index) {
        return;
    }
    require_ascending(row.place, "ordering-code index", *first_index, m_previous_ordering_index);
    int index = *first_index;
    for (const std::string& name : read_pattern(row, 1)) {
        m_previous_ordering_index = index;
        give_ordering_code(name, index, row.place);
        ++index;
    }
}

void CATALOG_READER::give_ordering_code(const std::string& name, int index, const SOURCE_PLACE& place) {
    const int last = m_catalog.ordering_entries - 1;
    const auto found = m_ordering_names.find(name, place, m_faults);
    if (!found) {
        return;
    }
    CATALOG_PART& part = m_catalog.parts[*found];
    if (upper_case(part.name) != upper_case(name)) {
        m_faults.add(place, "\"" + name + "\" is an alias of \"" + part.name + "\": name the part itself");
    } else if (part.number == 0) {
        m_faults.add(place, "\"" + name + "\" has no part number and so cannot have an ordering code");
    } else if (part.ordering_index >= 0) {
        m_faults.add(place, "\"" + name + "\" already has the ordering code " + std::to_string(part.ordering_index));
    } else if (index > last) {
        m_faults.add(place, "ordering-code index " + std::to_string(index) + " of \"" + name +
                                "\" is beyond the list, which ends at " + std::to_string(last) + RAISE_ENTRIES);
    } else {
        part.ordering_index = index;
        part.ordering_place = place;
        m_catalog.last_ordering_index = index;
    }
}

#include "profiles/source.h"

#include <algorithm>

#include "pgmdev_dev_info_manager.h"

namespace {

constexpr DWORD RECORDS = PGMDEV_DEV_INFO_MANAGER::TOTAL_DATABASE_DEVICE;
constexpr const char* WRONG_RECORD_COUNT = "device_count == TOTAL_DATABASE_DEVICE";
constexpr const char* UNFINISHED = "status";

/// A row that is not keyed once ends the first pass with `position` rows counted.
bool check_key(const SOURCE_LINE& line, std::size_t position, const FAULT_SINK& sink) {
    const auto keys = std::count_if(line.cells.begin(), line.cells.begin() + PROFILE_KEYS,
                                    [](const std::string& cell) { return !cell.empty(); });
    if (keys == 1) {
        return true;
    }
    PGMDEV_TABLE_FAULT fault;
    fault.line = line.number;
    fault.row = PROFILE_SOURCE::row_name(line);
    fault.condition = position < RECORDS ? WRONG_RECORD_COUNT : UNFINISHED;
    fault.expected = "one of family, pcf, device and part, this row has " + std::to_string(keys);
    sink(fault, PGMDEV_LINE);
    return false;
}

}  // namespace

void PROFILE_SOURCE::check_layout(const std::vector<SOURCE_LINE>& lines, bool readable, SOURCE_LAYOUT& layout,
                                  const FAULT_SINK& sink) {
    for (std::size_t i = 0; i < lines.size(); ++i) {
        if (!check_cell_count(lines[i], HEADER, sink)) {
            continue;
        }
        if (i == 0) {
            check_type_row(lines[i], HEADER, sink);
        } else if (i == 1) {
            check_name_row(lines[i], HEADER, sink);
        } else if (check_key(lines[i], i - HEADER_LINES, sink)) {
            layout.section_size += PROFILE_CODEC::packed_size(lines[i].cells);
            ++layout.record_count;
        }
    }
    const std::size_t rows = lines.size() - std::min(lines.size(), HEADER_LINES);
    if (rows != RECORDS || !readable) {
        PGMDEV_TABLE_FAULT fault;
        fault.condition = rows != RECORDS ? WRONG_RECORD_COUNT : UNFINISHED;
        fault.expected = readable ? "two header rows and " + std::to_string(RECORDS) + " data rows, found " +
                                        std::to_string(rows) + " data rows"
                                  : "a file that can be read";
        sink(fault, PGMDEV_LINE);
    }
}

void PROFILE_SOURCE::check_line(const SOURCE_LINE& line, const FAULT_SINK& sink) {
    if (line.length > LONGEST_LINE) {
        PGMDEV_TABLE_FAULT fault;
        fault.line = line.number;
        fault.condition = "line.size() <= 10240";
        fault.expected =
            "at most " + std::to_string(LONGEST_LINE) + " characters, this line has " + std::to_string(line.length);
        sink(fault, PGMDEV_LINE);
    }
}

std::string PROFILE_SOURCE::row_name(const SOURCE_LINE& line) {
    std::string name;
    for (std::size_t i = 0; i < std::min(line.cells.size(), PROFILE_KEYS); ++i) {
        if (!line.cells[i].empty()) {
            name += (name.empty() ? "" : " ") + std::string(PGMDEV_DEVICE_INFO_MEMBERS[i].name) + " " + line.cells[i];
        }
    }
    return name;
}

#include "profiles/source.h"

#include <algorithm>
#include <array>

#include "pgmdev_dev_info_manager.h"
#include "profiles/records.h"

namespace {

constexpr DWORD RECORDS = PGMDEV_DEV_INFO_MANAGER::TOTAL_DATABASE_DEVICE;
constexpr const char* WRONG_RECORD_COUNT = "device_count == TOTAL_DATABASE_DEVICE";
constexpr const char* UNFINISHED = "status";

constexpr std::array<SOURCE_COLUMN, PGMDEV_DEVICE_INFO_MEMBERS.size()> COLUMNS = [] {
    std::array<SOURCE_COLUMN, PGMDEV_DEVICE_INFO_MEMBERS.size()> columns{};
    for (std::size_t i = 0; i < columns.size(); ++i) {
        columns[i] = {PGMDEV_DEVICE_INFO_MEMBERS[i].name, PGMDEV_DEVICE_INFO_MEMBERS[i].kind};
    }
    return columns;
}();

constexpr SOURCE_HEADER HEADER{COLUMNS, "DWORD(svec.size()) == TOTAL_DEVICE_DATABASE_MEMBER",
                               "temp == m_db_name_list[i]"};

/// A row that is not keyed once ends the first pass with `position` rows counted.
bool check_key(const SOURCE_LINE& line, std::size_t position, const FAULT_SINK& sink) {
    const auto keys = std::count_if(line.cells.begin(), line.cells.begin() + DEV_INFO_KEYS,
                                    [](const std::string& cell) { return !cell.empty(); });
    if (keys == 1) {
        return true;
    }
    PGMDEV_TABLE_FAULT fault;
    fault.line = line.number;
    fault.row = dev_info_row_name(line);
    fault.condition = position < RECORDS ? WRONG_RECORD_COUNT : UNFINISHED;
    fault.expected = "one of family, pcf, device and part, this row has " + std::to_string(keys);
    sink(fault, __LINE__);
    return false;
}

}  // namespace

QWORD check_dev_info_layout(const std::vector<SOURCE_LINE>& lines, bool readable, DWORD& record_count,
                            const FAULT_SINK& sink) {
    QWORD size = PACKED_BODY_HEAD_SIZE + PACKED_MARKER_SIZE;
    record_count = 0;
    for (std::size_t i = 0; i < lines.size(); ++i) {
        if (!check_cell_count(lines[i], HEADER, sink)) {
            continue;
        }
        if (i == 0) {
            check_type_row(lines[i], HEADER, sink);
        } else if (i == 1) {
            check_name_row(lines[i], HEADER, sink);
        } else if (check_key(lines[i], i - DEV_INFO_HEADER_LINES, sink)) {
            size += dev_info_record_size(lines[i].cells);
            ++record_count;
        }
    }
    const std::size_t rows = lines.size() - std::min(lines.size(), DEV_INFO_HEADER_LINES);
    if (rows != RECORDS || !readable) {
        PGMDEV_TABLE_FAULT fault;
        fault.condition = rows != RECORDS ? WRONG_RECORD_COUNT : UNFINISHED;
        fault.expected = readable ? "two header rows and " + std::to_string(RECORDS) + " data rows, found " +
                                        std::to_string(rows) + " data rows"
                                  : "a file that can be read";
        sink(fault, __LINE__);
    }
    return size;
}

void check_dev_info_length(const SOURCE_LINE& line, const FAULT_SINK& sink) {
    if (line.length > DEV_INFO_LINE_MAX) {
        PGMDEV_TABLE_FAULT fault;
        fault.line = line.number;
        fault.condition = "line.size() <= 10240";
        fault.expected = "at most " + std::to_string(DEV_INFO_LINE_MAX) + " characters, this line has " +
                         std::to_string(line.length);
        sink(fault, __LINE__);
    }
}

void check_dev_info_cells(const SOURCE_LINE& line, const FAULT_SINK& sink) {
    for (std::size_t i = 0; i < line.cells.size(); ++i) {
        const PGMDEV_DEVICE_INFO_MEMBER& member = PGMDEV_DEVICE_INFO_MEMBERS[i];
        if (const char* condition = dev_info_cell_condition(member, line.cells[i])) {
            PGMDEV_TABLE_FAULT fault = cell_fault(line, i, member.name, condition, accepted_cell(member.kind));
            fault.row = dev_info_row_name(line);
            sink(fault, __LINE__);
        }
    }
}

std::string dev_info_row_name(const SOURCE_LINE& line) {
    std::string name;
    for (std::size_t i = 0; i < std::min(line.cells.size(), DEV_INFO_KEYS); ++i) {
        if (!line.cells[i].empty()) {
            name += (name.empty() ? "" : " ") + std::string(PGMDEV_DEVICE_INFO_MEMBERS[i].name) + " " + line.cells[i];
        }
    }
    return name;
}

#include "pgmdev_flash_table.h"

#include <algorithm>

#include "flash/records.h"
#include "flash/source.h"
#include "packed/file.h"

PGMDEV_FLASH_TABLE PGMDEV_FLASH_TABLE::from_source(const FIO_PATH& csv_file) {
    PGMDEV_FLASH_TABLE table;
    const FAULT_SINK collect = [&table](const PGMDEV_TABLE_FAULT& fault, int) { table.m_faults.push_back(fault); };

    bool readable = false;
    std::vector<SOURCE_LINE> lines = read_source_table(csv_file, false, readable);
    const FLASH_LAYOUT layout = check_flash_layout(lines, readable, collect);
    lines.erase(lines.begin(), lines.begin() + static_cast<std::ptrdiff_t>(std::min(lines.size(), FLASH_HEADER_LINES)));
    std::vector<SOURCE_LINE> sound;
    for (SOURCE_LINE& line : lines) {
        const std::size_t before = table.m_faults.size();
        if (line.cells.size() == PGMDEV_SFL_FLASH_MEMBERS.size()) {
            check_flash_cells(line, collect);
            if (table.m_faults.size() == before) {
                table.m_records.push_back(flash_record_of(line.cells));
                sound.push_back(std::move(line));
            }
        }
    }
    const bool well_formed = table.m_faults.empty();
    check_flash_rows(sound, table.m_records, collect);
    if (well_formed) {
        check_flash_rows_together(sound, table.m_records, collect);
        table.m_payload_size = static_cast<DWORD>(layout.payload_size);
    } else {
        table.m_records.clear();
    }
    sort_faults(table.m_faults);
    return table;
}

PGMDEV_FLASH_TABLE PGMDEV_FLASH_TABLE::from_database(const FIO_PATH& pcf_file) {
    PGMDEV_FLASH_TABLE table;
    const PACKED_BODY body = read_packed_file(pcf_file, FLASH_FORMAT);
    if (body.data == nullptr) {
        return table;
    }
    DWORD index = 0;
    PACKED_READER reader(body.data.get(), body.size, index, FLASH_FORMAT);
    const PACKED_BODY_HEAD head = reader.body_head();
    for (DWORD i = 0; i < head.record_count; ++i) {
        read_flash_members(reader, table.m_records.emplace_back());
        reader.confirm_record_end();
    }
    reader.confirm_database_end();
    table.m_payload_size = body.size;
    return table;
}

bool PGMDEV_FLASH_TABLE::has_faults() const noexcept {
    return has_fault(m_faults);
}

std::string PGMDEV_FLASH_TABLE::describe(const PGMDEV_TABLE_FAULT& fault, const std::string& file_name) {
    return describe_fault(fault, file_name);
}

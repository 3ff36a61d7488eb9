#include "pgmdev_dev_info_table.h"

#include <algorithm>

#include "pgmdev_dev_info_manager.h"
#include "profiles/records.h"
#include "profiles/source.h"

namespace {

/// A manager of one file.
class LOADER : public PGMDEV_DEV_INFO_MANAGER {
public:
    LOADER() : PGMDEV_DEV_INFO_MANAGER(true) {}

    using PGMDEV_DEV_INFO_MANAGER::get_table_size;
    using PGMDEV_DEV_INFO_MANAGER::initialize_device_database;
    using PGMDEV_DEV_INFO_MANAGER::m_csv_memory_size;
    using PGMDEV_DEV_INFO_MANAGER::m_device_count;
    using PGMDEV_DEV_INFO_MANAGER::m_device_database;
    using PGMDEV_DEV_INFO_MANAGER::m_device_table;
    using PGMDEV_DEV_INFO_MANAGER::m_family_table;
    using PGMDEV_DEV_INFO_MANAGER::m_part_table;
};

}  // namespace

PGMDEV_DEV_INFO_TABLE PGMDEV_DEV_INFO_TABLE::from_source(const FIO_PATH& csv_file) {
    PGMDEV_DEV_INFO_TABLE table;
    const FAULT_SINK collect = [&table](const PGMDEV_TABLE_FAULT& fault, int) { table.m_faults.push_back(fault); };

    bool readable = false;
    std::vector<SOURCE_LINE> lines = read_source_table(csv_file, true, readable);
    DWORD record_count = 0;
    const QWORD size = check_dev_info_layout(lines, readable, record_count, collect);
    for (const SOURCE_LINE& line : lines) {
        check_dev_info_length(line, collect);
    }
    lines.erase(lines.begin(),
                lines.begin() + static_cast<std::ptrdiff_t>(std::min(lines.size(), DEV_INFO_HEADER_LINES)));
    std::vector<SOURCE_LINE> sound;
    for (SOURCE_LINE& line : lines) {
        const std::size_t before = table.m_faults.size();
        if (line.cells.size() == PGMDEV_DEVICE_INFO_MEMBERS.size()) {
            check_dev_info_cells(line, collect);
            if (table.m_faults.size() == before) {
                table.m_records.push_back(dev_info_record_of(line.cells));
                sound.push_back(std::move(line));
            }
        }
    }
    const bool well_formed = table.m_faults.empty();
    check_dev_info_rows(sound, table.m_records, collect);
    if (well_formed) {
        check_dev_info_rows_together(sound, table.m_records, collect);
        table.m_payload_size = static_cast<DWORD>(size) + LOADER().get_table_size();
    } else {
        table.m_records.clear();
    }
    sort_faults(table.m_faults);
    return table;
}

PGMDEV_DEV_INFO_TABLE PGMDEV_DEV_INFO_TABLE::from_database(const FIO_PATH& pcf_file) {
    PGMDEV_DEV_INFO_TABLE table;
    LOADER loader;
    loader.initialize_device_database(pcf_file);
    if (loader.m_device_database == nullptr) {
        return table;
    }
    const auto [families, devices, parts] = index_table_counts();
    table.m_records.assign(loader.m_device_database, loader.m_device_database + loader.m_device_count);
    table.m_family_table.assign(loader.m_family_table, loader.m_family_table + families);
    table.m_device_table.assign(loader.m_device_table, loader.m_device_table + devices);
    table.m_part_table.assign(loader.m_part_table, loader.m_part_table + parts);
    table.m_payload_size = loader.m_csv_memory_size + loader.get_table_size();
    return table;
}

bool PGMDEV_DEV_INFO_TABLE::has_faults() const noexcept {
    return has_fault(m_faults);
}

std::string PGMDEV_DEV_INFO_TABLE::describe(const PGMDEV_TABLE_FAULT& fault, const std::string& file_name) {
    return describe_fault(fault, file_name);
}

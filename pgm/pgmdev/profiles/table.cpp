#include "pgmdev_dev_info_table.h"

#include "pgmdev_dev_info_manager.h"
#include "profiles/source.h"

namespace {

/// A manager of one file.
class LOADER : public PGMDEV_DEV_INFO_MANAGER {
public:
    LOADER() : PGMDEV_DEV_INFO_MANAGER(true) {}

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
    auto examined = examine_source_table<PROFILE_SOURCE>(csv_file);
    PGMDEV_DEV_INFO_TABLE table;
    table.m_records = std::move(examined.records);
    table.m_faults = std::move(examined.faults);
    if (examined.section_size != 0) {
        table.m_payload_size = static_cast<DWORD>(examined.section_size + index_tables_size());
    }
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
    table.m_payload_size = loader.m_csv_memory_size + index_tables_size();
    return table;
}

bool PGMDEV_DEV_INFO_TABLE::has_faults() const noexcept {
    return has_fault(m_faults);
}

std::string PGMDEV_DEV_INFO_TABLE::describe(const PGMDEV_TABLE_FAULT& fault, const std::string& file_name) {
    return describe_fault(fault, file_name);
}

#include "pgmdev_flash_table.h"

#include <algorithm>

#include "flash/source.h"
#include "packed/file.h"

PGMDEV_FLASH_TABLE PGMDEV_FLASH_TABLE::from_source(const FIO_PATH& csv_file) {
    auto examined = examine_source_table<FLASH_SOURCE>(csv_file);
    PGMDEV_FLASH_TABLE table;
    table.m_records = std::move(examined.records);
    table.m_faults = std::move(examined.faults);
    table.m_payload_size = static_cast<DWORD>(examined.section_size);
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
    table.m_records.reserve(std::min<QWORD>(head.record_count, FLASH_CODEC::most_records_in(body.size)));
    for (DWORD i = 0; i < head.record_count; ++i) {
        FLASH_CODEC::read(reader, table.m_records.emplace_back());
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

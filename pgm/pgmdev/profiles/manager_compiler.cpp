#include "msg.h"
#include "packed/file.h"
#include "pgmdev_dev_info_manager.h"
#include "pgmdev_dev_info_manager_auto_export.h"
#include "profiles/part_list.h"
#include "profiles/records.h"
#include "profiles/source.h"
#include "report.h"

// Compiling the source table.

namespace {

constexpr const char* SOURCE = "pgm/pgmdev/pgmdev_dev_info_manager";

}  // namespace

DWORD PGMDEV_DEV_INFO_MANAGER::check_device_file(FIO_PATH csv, DWORD& device_count) {
    bool readable = false;
    const std::vector<SOURCE_LINE> lines = read_source_table(csv, true, readable);
    return static_cast<DWORD>(check_dev_info_layout(lines, readable, device_count, refusing_sink(csv, SOURCE)));
}

void PGMDEV_DEV_INFO_MANAGER::generate_device_database(FIO_PATH csv, FIO_PATH output) {
    // Both passes go over the same lines in memory, so that a file that changes meanwhile cannot outgrow the buffer.
    bool readable = false;
    const std::vector<SOURCE_LINE> lines = read_source_table(csv, true, readable);
    const FAULT_SINK refuse = refusing_sink(csv, SOURCE);
    DWORD device_count = 0;
    const QWORD pure_memory_size = check_dev_info_layout(lines, readable, device_count, refuse);
    PGMDEV_REQUIRE(pure_memory_size > 0, "pure_memory_size > 0", SOURCE);

    const QWORD body_size = pure_memory_size + get_table_size();
    const QWORD memory_size = PACKED_HEAD_SIZE + body_size;
    PGMDEV_REQUIRE(memory_size <= 0xFFFFFFFF, "index == memory_size", SOURCE);  // the size field has 32 bits
    const BYTE_BUFFER image(new BYTE[memory_size]());
    DWORD index = 0;
    PACKED_WRITER writer(image.get(), memory_size, index, DEV_INFO_FORMAT);
    writer.put_heads(static_cast<DWORD>(body_size), device_count, TOTAL_DEVICE_DATABASE_MEMBER);
    for (std::size_t i = 0; i < lines.size(); ++i) {
        check_dev_info_length(lines[i], refuse);
        if (i >= DEV_INFO_HEADER_LINES) {
            check_dev_info_cells(lines[i], refuse);
            write_dev_info_members(writer, lines[i].cells);
            writer.put_text(PACKED_RECORD_END);
        }
    }
    writer.put_text(PACKED_DATABASE_END);

    parse_body(image.get() + PACKED_HEAD_SIZE, index - PACKED_HEAD_SIZE, true);
    const std::size_t known_parts = m_pgm_parts.size();
    try {
        PGMDEV_REQUIRE(m_device_database != nullptr, "m_device_database != NULL", SOURCE);
        parse_pgm_parts();
        compute_tables();
        write_tables(image.get(), memory_size, index);
        PGMDEV_REQUIRE(index == memory_size, "index == memory_size", SOURCE);
        write_packed_file(output, image.get(), index, DEV_INFO_FORMAT);
    } catch (...) {
        hold_arrays();
        m_pgm_parts.resize(known_parts);
        unload();
        throw;
    }
}

void PGMDEV_DEV_INFO_MANAGER::dump_to_database(BYTE** data, DWORD& index, std::vector<std::string> tokens) {
    PACKED_WRITER writer(*data, PACKED_TRUSTED_SIZE, index, DEV_INFO_FORMAT);
    write_dev_info_members(writer, tokens);
}

void PGMDEV_DEV_INFO_MANAGER::parse_pgm_parts() {
    std::vector<PGMDEV_PGM_PART> parts;
    const char* condition = read_part_list(parts);
    PGMDEV_REQUIRE(condition == nullptr, condition, SOURCE);
    m_pgm_parts.reserve(m_pgm_parts.size() + parts.size());
    for (PGMDEV_PGM_PART& part : parts) {
        m_pgm_parts.push_back(new PGMDEV_PGM_PART(std::move(part)));
    }
}

std::string PGMDEV_DEV_INFO_MANAGER::convert_id_enum_to_string(std::string type_name, DWORD id) {
    if (type_name == "family") {
        PGMDEV_REQUIRE(id < DWORD{DEV_FAMILY_MAX}, "id < DWORD(DEV_FAMILY_MAX)", SOURCE);
        return pgmdev_family_name(static_cast<DEV_FAMILY_ENUM>(id));
    }
    if (type_name == "device") {
        PGMDEV_REQUIRE(id < DWORD{DEV_DEVICE_MAX}, "id < DWORD(DEV_DEVICE_MAX)", SOURCE);
        return id == DEV_DEVICE_GENERIC ? "GENERIC" : "";
    }
    if (type_name == "part") {
        PGMDEV_REQUIRE(id < static_cast<DWORD>(DEV_PART_MAX), "id < DWORD(DEV_PART_MAX)", SOURCE);
        return id == static_cast<DWORD>(DEV_PART_GENERIC) ? "GENERIC" : "";
    }
    pgmdev_report_soft("Unsupported type name", SOURCE, __LINE__);
    return "";
}

#include "msg.h"
#include "packed/file.h"
#include "pgmdev_dev_info_manager.h"
#include "pgmdev_dev_info_manager_auto_export.h"
#include "profiles/loading.h"
#include "profiles/part_list.h"
#include "profiles/records.h"
#include "profiles/source.h"
#include "report.h"

// Compiling the source table.

DWORD PGMDEV_DEV_INFO_MANAGER::check_device_file(FIO_PATH csv, DWORD& device_count) {
    return check_source_file<PROFILE_SOURCE>(csv, device_count);
}

void PGMDEV_DEV_INFO_MANAGER::generate_device_database(FIO_PATH csv, FIO_PATH output) {
    PACKED_IMAGE image = compile_source_file<PROFILE_SOURCE>(csv, get_table_size());
    PGMDEV_REQUIRE(m_device_database == nullptr, "m_device_database == NULL", DEV_INFO_MANAGER_FILE);
    LOADING loading(*this);
    parse_body(image.data.get() + PACKED_HEAD_SIZE, image.index - PACKED_HEAD_SIZE, true);
    PGMDEV_REQUIRE(m_device_database != nullptr, "m_device_database != NULL", DEV_INFO_MANAGER_FILE);
    parse_pgm_parts();
    compute_tables();
    write_tables(image.data.get(), image.size, image.index);
    write_packed_image(output, image, DEV_INFO_FORMAT);
    loading.done();
}

void PGMDEV_DEV_INFO_MANAGER::dump_to_database(BYTE** data, DWORD& index, std::vector<std::string> tokens) {
    PACKED_WRITER writer(*data, PACKED_TRUSTED_SIZE, index, DEV_INFO_FORMAT);
    PROFILE_CODEC::write_cells(writer, tokens);
}

void PGMDEV_DEV_INFO_MANAGER::parse_pgm_parts() {
    std::vector<PGMDEV_PGM_PART> parts;
    const char* condition = read_part_list(parts);
    PGMDEV_REQUIRE(condition == nullptr, condition, DEV_INFO_MANAGER_FILE);
    m_pgm_parts.reserve(m_pgm_parts.size() + parts.size());
    for (PGMDEV_PGM_PART& part : parts) {
        m_pgm_parts.push_back(new PGMDEV_PGM_PART(std::move(part)));
    }
}

std::string PGMDEV_DEV_INFO_MANAGER::convert_id_enum_to_string(std::string type_name, DWORD id) {
    if (type_name == "family") {
        PGMDEV_REQUIRE(id < DWORD{DEV_FAMILY_MAX}, "id < DWORD(DEV_FAMILY_MAX)", DEV_INFO_MANAGER_FILE);
        return pgmdev_family_name(static_cast<DEV_FAMILY_ENUM>(id));
    }
    if (type_name == "device") {
        PGMDEV_REQUIRE(id < DWORD{DEV_DEVICE_MAX}, "id < DWORD(DEV_DEVICE_MAX)", DEV_INFO_MANAGER_FILE);
        return id == DEV_DEVICE_GENERIC ? "GENERIC" : "";
    }
    if (type_name == "part") {
        PGMDEV_REQUIRE(id < static_cast<DWORD>(DEV_PART_MAX), "id < DWORD(DEV_PART_MAX)", DEV_INFO_MANAGER_FILE);
        return id == static_cast<DWORD>(DEV_PART_GENERIC) ? "GENERIC" : "";
    }
    pgmdev_report_soft("Unsupported type name", DEV_INFO_MANAGER_FILE, PGMDEV_LINE);
    return "";
}

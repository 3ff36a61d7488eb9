#pragma once

#include "pgmdev_dev_info_manager.h"

/// A manager whose protected members a test can reach.
class DEV_INFO_PROBE : public PGMDEV_DEV_INFO_MANAGER {
public:
    /// An empty manager.
    DEV_INFO_PROBE() : PGMDEV_DEV_INFO_MANAGER(true) {}
    using PGMDEV_DEV_INFO_MANAGER::PGMDEV_DEV_INFO_MANAGER;

    using PGMDEV_DEV_INFO_MANAGER::calculate_crc16;
    using PGMDEV_DEV_INFO_MANAGER::check_device_file;
    using PGMDEV_DEV_INFO_MANAGER::compress_data;
    using PGMDEV_DEV_INFO_MANAGER::confirm_data_type_end;
    using PGMDEV_DEV_INFO_MANAGER::confirm_database_end;
    using PGMDEV_DEV_INFO_MANAGER::convert_id_enum_to_string;
    using PGMDEV_DEV_INFO_MANAGER::copy_database;
    using PGMDEV_DEV_INFO_MANAGER::decompress_data;
    using PGMDEV_DEV_INFO_MANAGER::dump_bool_to_database;
    using PGMDEV_DEV_INFO_MANAGER::dump_dword_database;
    using PGMDEV_DEV_INFO_MANAGER::dump_enum_to_database;
    using PGMDEV_DEV_INFO_MANAGER::dump_string_to_database;
    using PGMDEV_DEV_INFO_MANAGER::dump_to_database;
    using PGMDEV_DEV_INFO_MANAGER::dump_value_to_database;
    using PGMDEV_DEV_INFO_MANAGER::get_bool_data;
    using PGMDEV_DEV_INFO_MANAGER::get_byte_data;
    using PGMDEV_DEV_INFO_MANAGER::get_database;
    using PGMDEV_DEV_INFO_MANAGER::get_dword;
    using PGMDEV_DEV_INFO_MANAGER::get_dword_data;
    using PGMDEV_DEV_INFO_MANAGER::get_dword_from_string;
    using PGMDEV_DEV_INFO_MANAGER::get_string_data;
    using PGMDEV_DEV_INFO_MANAGER::get_table;
    using PGMDEV_DEV_INFO_MANAGER::get_table_size;
    using PGMDEV_DEV_INFO_MANAGER::get_word_data;
    using PGMDEV_DEV_INFO_MANAGER::initialize_device_database;
    using PGMDEV_DEV_INFO_MANAGER::m_csv_memory_size;
    using PGMDEV_DEV_INFO_MANAGER::m_db_name_list;
    using PGMDEV_DEV_INFO_MANAGER::m_debug_mode;
    using PGMDEV_DEV_INFO_MANAGER::m_device_count;
    using PGMDEV_DEV_INFO_MANAGER::m_device_database;
    using PGMDEV_DEV_INFO_MANAGER::m_device_table;
    using PGMDEV_DEV_INFO_MANAGER::m_family_table;
    using PGMDEV_DEV_INFO_MANAGER::m_index;
    using PGMDEV_DEV_INFO_MANAGER::m_part_table;
    using PGMDEV_DEV_INFO_MANAGER::m_pgm_parts;
    using PGMDEV_DEV_INFO_MANAGER::m_type_count;
    using PGMDEV_DEV_INFO_MANAGER::m_version;
    using PGMDEV_DEV_INFO_MANAGER::parse_database;
    using PGMDEV_DEV_INFO_MANAGER::parse_pgm_parts;
    using PGMDEV_DEV_INFO_MANAGER::print_database;
    using PGMDEV_DEV_INFO_MANAGER::print_table;
    using PGMDEV_DEV_INFO_MANAGER::search_device;
    using PGMDEV_DEV_INFO_MANAGER::search_family;
    using PGMDEV_DEV_INFO_MANAGER::search_part;
    using PGMDEV_DEV_INFO_MANAGER::search_pcf_for_device;
    using PGMDEV_DEV_INFO_MANAGER::search_pcf_for_part;
};

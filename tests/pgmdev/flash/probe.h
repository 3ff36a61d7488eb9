#pragma once

#include "pgmdev_flash_manager.h"

/// A manager whose protected members a test can reach.
class FLASH_PROBE : public PGMDEV_FLASH_MANAGER {
public:
    /// An empty manager.
    FLASH_PROBE() : PGMDEV_FLASH_MANAGER(false, 0, true, false) {}
    using PGMDEV_FLASH_MANAGER::PGMDEV_FLASH_MANAGER;

    using PGMDEV_FLASH_MANAGER::calculate_crc16;
    using PGMDEV_FLASH_MANAGER::check_flash_file;
    using PGMDEV_FLASH_MANAGER::compress_data;
    using PGMDEV_FLASH_MANAGER::confirm_data_type_end;
    using PGMDEV_FLASH_MANAGER::confirm_database_end;
    using PGMDEV_FLASH_MANAGER::confirm_default_value;
    using PGMDEV_FLASH_MANAGER::copy_ini_database;
    using PGMDEV_FLASH_MANAGER::decompress_data;
    using PGMDEV_FLASH_MANAGER::dump_bool_to_database;
    using PGMDEV_FLASH_MANAGER::dump_dword_database;
    using PGMDEV_FLASH_MANAGER::dump_string_to_database;
    using PGMDEV_FLASH_MANAGER::dump_to_database;
    using PGMDEV_FLASH_MANAGER::dump_value_to_database;
    using PGMDEV_FLASH_MANAGER::enable_device;
    using PGMDEV_FLASH_MANAGER::get_bool_data;
    using PGMDEV_FLASH_MANAGER::get_boolean_from_string;
    using PGMDEV_FLASH_MANAGER::get_byte_data;
    using PGMDEV_FLASH_MANAGER::get_database;
    using PGMDEV_FLASH_MANAGER::get_dword;
    using PGMDEV_FLASH_MANAGER::get_dword_data;
    using PGMDEV_FLASH_MANAGER::get_dword_from_string;
    using PGMDEV_FLASH_MANAGER::get_number_from_string;
    using PGMDEV_FLASH_MANAGER::get_string_data;
    using PGMDEV_FLASH_MANAGER::get_word_data;
    using PGMDEV_FLASH_MANAGER::initialize_flash_database;
    using PGMDEV_FLASH_MANAGER::is_power_of_two;
    using PGMDEV_FLASH_MANAGER::m_device_count;
    using PGMDEV_FLASH_MANAGER::m_device_to_flash_map;
    using PGMDEV_FLASH_MANAGER::m_flash_count;
    using PGMDEV_FLASH_MANAGER::m_flash_database;
    using PGMDEV_FLASH_MANAGER::m_ini_count;
    using PGMDEV_FLASH_MANAGER::m_ini_flash_info;
    using PGMDEV_FLASH_MANAGER::m_name_list;
    using PGMDEV_FLASH_MANAGER::m_print_on_load;
    using PGMDEV_FLASH_MANAGER::m_type_count;
    using PGMDEV_FLASH_MANAGER::m_version;
    using PGMDEV_FLASH_MANAGER::null_info_database;
    using PGMDEV_FLASH_MANAGER::parse_database;
    using PGMDEV_FLASH_MANAGER::print_database;
    using PGMDEV_FLASH_MANAGER::to_string;
};

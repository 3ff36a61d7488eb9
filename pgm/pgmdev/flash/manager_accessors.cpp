#include "pgmdev_flash_manager.h"

// One accessor for each member of the record that a device is mapped to.

std::string PGMDEV_FLASH_MANAGER::sfl_get_manufacturer_name(DWORD device) {
    return mapped_record(device).manufacturer_name;
}

std::string PGMDEV_FLASH_MANAGER::sfl_get_device_name(DWORD device) {
    return mapped_record(device).device_name;
}

bool PGMDEV_FLASH_MANAGER::sfl_get_silicon_id(DWORD device) {
    return mapped_record(device).silicon_id;
}

BYTE PGMDEV_FLASH_MANAGER::sfl_get_memory_id(DWORD device) {
    return mapped_record(device).memory_id;
}

BYTE PGMDEV_FLASH_MANAGER::sfl_get_memory_id_index(DWORD device) {
    return mapped_record(device).memory_id_index;
}

BYTE PGMDEV_FLASH_MANAGER::sfl_get_memory_type(DWORD device) {
    return mapped_record(device).memory_type;
}

BYTE PGMDEV_FLASH_MANAGER::sfl_get_memory_type_index(DWORD device) {
    return mapped_record(device).memory_type_index;
}

BYTE PGMDEV_FLASH_MANAGER::sfl_get_mfc_id(DWORD device) {
    return mapped_record(device).mfc_id;
}

BYTE PGMDEV_FLASH_MANAGER::sfl_get_mfc_id_index(DWORD device) {
    return mapped_record(device).mfc_id_index;
}

BYTE PGMDEV_FLASH_MANAGER::sfl_get_orvane_id(DWORD device) {
    return mapped_record(device).orvane_id;
}

bool PGMDEV_FLASH_MANAGER::sfl_get_default_dev(DWORD device) {
    return mapped_record(device).default_dev;
}

std::string PGMDEV_FLASH_MANAGER::sfl_get_ini(DWORD device) {
    return mapped_record(device).ini;
}

bool PGMDEV_FLASH_MANAGER::sfl_get_extended_mode(DWORD device) {
    return mapped_record(device).extended_mode;
}

bool PGMDEV_FLASH_MANAGER::sfl_get_micron_flow(DWORD device) {
    return mapped_record(device).micron_flow;
}

bool PGMDEV_FLASH_MANAGER::sfl_get_spansion_flow(DWORD device) {
    return mapped_record(device).spansion_flow;
}

bool PGMDEV_FLASH_MANAGER::sfl_get_startup_protected(DWORD device) {
    return mapped_record(device).startup_protected;
}

bool PGMDEV_FLASH_MANAGER::sfl_get_aai_mode(DWORD device) {
    return mapped_record(device).aai_mode;
}

bool PGMDEV_FLASH_MANAGER::sfl_get_flag_status(DWORD device) {
    return mapped_record(device).flag_status;
}

BYTE PGMDEV_FLASH_MANAGER::sfl_get_die_count(DWORD device) {
    return mapped_record(device).die_count;
}

DWORD PGMDEV_FLASH_MANAGER::sfl_get_device_bit_size(DWORD device) {
    return mapped_record(device).device_bit_size;
}

DWORD PGMDEV_FLASH_MANAGER::sfl_get_device_sector_byte(DWORD device) {
    return mapped_record(device).device_sector_byte;
}

bool PGMDEV_FLASH_MANAGER::sfl_get_half_size(DWORD device) {
    return mapped_record(device).half_size;
}

bool PGMDEV_FLASH_MANAGER::sfl_get_byte4_addressing(DWORD device) {
    return mapped_record(device).byte4_addressing;
}

DWORD PGMDEV_FLASH_MANAGER::sfl_get_bulk_erase_time(DWORD device) {
    return mapped_record(device).bulk_erase_time;
}

DWORD PGMDEV_FLASH_MANAGER::sfl_get_sec_erase_time(DWORD device) {
    return mapped_record(device).sec_erase_time;
}

DWORD PGMDEV_FLASH_MANAGER::sfl_get_program_utime(DWORD device) {
    return mapped_record(device).program_utime;
}

BYTE PGMDEV_FLASH_MANAGER::sfl_get_protection_mask(DWORD device) {
    return mapped_record(device).protection_mask;
}

BYTE PGMDEV_FLASH_MANAGER::sfl_get_protection_value(DWORD device) {
    return mapped_record(device).protection_value;
}

BYTE PGMDEV_FLASH_MANAGER::sfl_get_unprotect_value(DWORD device) {
    return mapped_record(device).unprotect_value;
}

BYTE PGMDEV_FLASH_MANAGER::sfl_get_protection_division(DWORD device) {
    return mapped_record(device).protection_division;
}

BYTE PGMDEV_FLASH_MANAGER::sfl_get_bottom_value(DWORD device) {
    return mapped_record(device).bottom_value;
}

bool PGMDEV_FLASH_MANAGER::sfl_get_sdm_support(DWORD device) {
    return mapped_record(device).sdm_support;
}

std::string PGMDEV_FLASH_MANAGER::sfl_get_asc_voltage(DWORD device) {
    return mapped_record(device).asc_voltage;
}

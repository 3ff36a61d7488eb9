#include "pgmdev_flash_manager.h"

// One accessor for each member of the record that a device is mapped to.

#define ACCESSOR(type, member)                                  \
    type PGMDEV_FLASH_MANAGER::sfl_get_##member(DWORD device) { \
        return mapped_record(device).member;                    \
    }

// clang-format off
ACCESSOR(std::string, manufacturer_name)
ACCESSOR(std::string, device_name)
ACCESSOR(bool, silicon_id)
ACCESSOR(BYTE, memory_id)
ACCESSOR(BYTE, memory_id_index)
ACCESSOR(BYTE, memory_type)
ACCESSOR(BYTE, memory_type_index)
ACCESSOR(BYTE, mfc_id)
ACCESSOR(BYTE, mfc_id_index)
ACCESSOR(BYTE, orvane_id)
ACCESSOR(bool, default_dev)
ACCESSOR(std::string, ini)
ACCESSOR(bool, extended_mode)
ACCESSOR(bool, micron_flow)
ACCESSOR(bool, spansion_flow)
ACCESSOR(bool, startup_protected)
ACCESSOR(bool, aai_mode)
ACCESSOR(bool, flag_status)
ACCESSOR(BYTE, die_count)
ACCESSOR(DWORD, device_bit_size)
ACCESSOR(DWORD, device_sector_byte)
ACCESSOR(bool, half_size)
ACCESSOR(bool, byte4_addressing)
ACCESSOR(DWORD, bulk_erase_time)
ACCESSOR(DWORD, sec_erase_time)
ACCESSOR(DWORD, program_utime)
ACCESSOR(BYTE, protection_mask)
ACCESSOR(BYTE, protection_value)
ACCESSOR(BYTE, unprotect_value)
ACCESSOR(BYTE, protection_division)
ACCESSOR(BYTE, bottom_value)
ACCESSOR(bool, sdm_support)
ACCESSOR(std::string, asc_voltage)
// clang-format on

#undef ACCESSOR

#pragma once

/// \file
/// The serial flash record, and the description of its members.
///
/// A record says how one serial flash device is recognised by what it answers to an identification read (the JEDEC
/// read-ID command RDID, or the older one-byte electronic signature), and how it must be erased, programmed and
/// protected. The figures come from the device's datasheet.

#include <array>
#include <string>
#include <string_view>
#include <variant>

#include "pgmdev_manager_type.h"
#include "pgmdev_types.h"

/// One serial flash device. A default-constructed record has empty texts, and 0 or false everywhere else.
struct PGMDEV_SFL_FLASH_INFO {
    std::string manufacturer_name;  ///< maker of the flash
    std::string device_name;        ///< name of the flash; compared without regard to case

    /// The device answers one silicon-ID byte, not a manufacturer, memory-type and memory-ID byte.
    bool silicon_id = false;
    BYTE memory_id = 0;          ///< expected memory-ID (capacity) byte, or silicon-ID byte
    BYTE memory_id_index = 0;    ///< position of that byte in the response
    BYTE memory_type = 0;        ///< expected memory-type byte
    BYTE memory_type_index = 0;  ///< position of that byte; 255: the memory type is not compared
    BYTE mfc_id = 0;             ///< expected manufacturer-ID byte (JEDEC JEP106)
    BYTE mfc_id_index = 0;       ///< position of that byte
    BYTE orvane_id = 0;          ///< the tool's own code of the density class

    bool default_dev = false;        ///< this row stands for its device name, which several rows may share
    std::string ini;                 ///< switch that enables the row ("PGM_ALLOW_" + ini); "NONE": always enabled
    bool extended_mode = false;      ///< larger than 24-bit addresses reach
    bool micron_flow = false;        ///< needs the Micron programming flow
    bool spansion_flow = false;      ///< needs the Spansion programming flow
    bool startup_protected = false;  ///< comes out of power-up protected
    bool aai_mode = false;           ///< is programmed by auto address increment
    bool flag_status = false;        ///< has a flag status register to poll
    BYTE die_count = 0;              ///< dies in the package
    DWORD device_bit_size = 0;       ///< capacity in bits
    DWORD device_sector_byte = 0;    ///< sector size in bytes
    bool half_size = false;          ///< only half of the capacity is used
    bool byte4_addressing = false;   ///< takes 4-byte addresses

    DWORD bulk_erase_time = 0;  ///< longest erase of the whole device, in seconds
    DWORD sec_erase_time = 0;   ///< longest erase of a sector, in seconds
    DWORD program_utime = 0;    ///< longest program operation, in microseconds

    BYTE protection_mask = 0;      ///< block protect bits in the status register
    BYTE protection_value = 0;     ///< these bits when all is protected
    BYTE unprotect_value = 0;      ///< these bits when nothing is protected
    BYTE protection_division = 0;  ///< granularity of the protection; 255: not known
    BYTE bottom_value = 0;         ///< number of the status-register bit that protects from the bottom; 255: none
    bool sdm_support = false;      ///< a secure device manager can boot from it
    std::string asc_voltage;       ///< supply voltage, as text

    bool operator==(const PGMDEV_SFL_FLASH_INFO&) const = default;
};

/// One member of the record: its name, its packed type, and where it is.
struct PGMDEV_SFL_FLASH_MEMBER {
    using FIELD = std::variant<std::string PGMDEV_SFL_FLASH_INFO::*, bool PGMDEV_SFL_FLASH_INFO::*,
                               BYTE PGMDEV_SFL_FLASH_INFO::*, DWORD PGMDEV_SFL_FLASH_INFO::*>;

    std::string_view name;
    FIELD field;

    /// How the member is stored; it follows from the type of the field.
    constexpr PGMDEV_MANAGER_TYPE type() const {
        constexpr std::array TYPES{PGMDEV_MANAGER_STRING, PGMDEV_MANAGER_BOOL, PGMDEV_MANAGER_BYTE,
                                   PGMDEV_MANAGER_DWORD};
        return TYPES[field.index()];
    }
};

/// All members in order: the order of the fields in the packed database, and of the columns of the source table.
inline constexpr std::array<PGMDEV_SFL_FLASH_MEMBER, 33> PGMDEV_SFL_FLASH_MEMBERS{{
    {"manufacturer_name", &PGMDEV_SFL_FLASH_INFO::manufacturer_name},
    {"device_name", &PGMDEV_SFL_FLASH_INFO::device_name},
    {"silicon_id", &PGMDEV_SFL_FLASH_INFO::silicon_id},
    {"memory_id", &PGMDEV_SFL_FLASH_INFO::memory_id},
    {"memory_id_index", &PGMDEV_SFL_FLASH_INFO::memory_id_index},
    {"memory_type", &PGMDEV_SFL_FLASH_INFO::memory_type},
    {"memory_type_index", &PGMDEV_SFL_FLASH_INFO::memory_type_index},
    {"mfc_id", &PGMDEV_SFL_FLASH_INFO::mfc_id},
    {"mfc_id_index", &PGMDEV_SFL_FLASH_INFO::mfc_id_index},
    {"orvane_id", &PGMDEV_SFL_FLASH_INFO::orvane_id},
    {"default_dev", &PGMDEV_SFL_FLASH_INFO::default_dev},
    {"ini", &PGMDEV_SFL_FLASH_INFO::ini},
    {"extended_mode", &PGMDEV_SFL_FLASH_INFO::extended_mode},
    {"micron_flow", &PGMDEV_SFL_FLASH_INFO::micron_flow},
    {"spansion_flow", &PGMDEV_SFL_FLASH_INFO::spansion_flow},
    {"startup_protected", &PGMDEV_SFL_FLASH_INFO::startup_protected},
    {"aai_mode", &PGMDEV_SFL_FLASH_INFO::aai_mode},
    {"flag_status", &PGMDEV_SFL_FLASH_INFO::flag_status},
    {"die_count", &PGMDEV_SFL_FLASH_INFO::die_count},
    {"device_bit_size", &PGMDEV_SFL_FLASH_INFO::device_bit_size},
    {"device_sector_byte", &PGMDEV_SFL_FLASH_INFO::device_sector_byte},
    {"half_size", &PGMDEV_SFL_FLASH_INFO::half_size},
    {"byte4_addressing", &PGMDEV_SFL_FLASH_INFO::byte4_addressing},
    {"bulk_erase_time", &PGMDEV_SFL_FLASH_INFO::bulk_erase_time},
    {"sec_erase_time", &PGMDEV_SFL_FLASH_INFO::sec_erase_time},
    {"program_utime", &PGMDEV_SFL_FLASH_INFO::program_utime},
    {"protection_mask", &PGMDEV_SFL_FLASH_INFO::protection_mask},
    {"protection_value", &PGMDEV_SFL_FLASH_INFO::protection_value},
    {"unprotect_value", &PGMDEV_SFL_FLASH_INFO::unprotect_value},
    {"protection_division", &PGMDEV_SFL_FLASH_INFO::protection_division},
    {"bottom_value", &PGMDEV_SFL_FLASH_INFO::bottom_value},
    {"sdm_support", &PGMDEV_SFL_FLASH_INFO::sdm_support},
    {"asc_voltage", &PGMDEV_SFL_FLASH_INFO::asc_voltage},
}};

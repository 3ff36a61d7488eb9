#pragma once

/// \file
/// The serial flash record, and the description of its members.
///
/// A record says how one serial flash device is recognised by what it answers to an identification read (the JEDEC
/// read-ID command RDID, or the older one-byte electronic signature), and how it must be erased, programmed and
/// protected. The figures come from the device's datasheet.

#include <array>
#include <stdexcept>
#include <string>
#include <string_view>
#include <variant>

#include "pgmdev_cell.h"
#include "pgmdev_manager_type.h"
#include "pgmdev_types.h"

/// One serial flash device. A default-constructed record has empty texts, and 0 or false everywhere else.
struct PGMDEV_SFL_FLASH_INFO {
    /// No place, where a member names a byte of the response or a bit: it is not compared, does not exist, is not known.
    static constexpr BYTE NONE = 255;

    std::string manufacturer_name;  ///< maker of the flash
    std::string device_name;        ///< name of the flash; compared without regard to case

    /// The device answers one silicon-ID byte, not a manufacturer, memory-type and memory-ID byte.
    bool silicon_id = false;
    BYTE memory_id = 0;          ///< expected memory-ID (capacity) byte, or silicon-ID byte
    BYTE memory_id_index = 0;    ///< position of that byte in the response
    BYTE memory_type = 0;        ///< expected memory-type byte
    BYTE memory_type_index = 0;  ///< position of that byte; NONE: the memory type is not compared
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
    BYTE protection_division = 0;  ///< granularity of the protection; NONE: not known
    BYTE bottom_value = 0;     ///< number of the status-register bit that protects from the bottom; NONE: there is none
    bool sdm_support = false;  ///< a secure device manager can boot from it
    std::string asc_voltage;   ///< supply voltage, as text

    bool operator==(const PGMDEV_SFL_FLASH_INFO&) const = default;
};

/// How a user who describes a flash of his own is asked for a member.
struct PGMDEV_SFL_FLASH_QUESTION {
    enum class ANSWER {
        GIVEN,            ///< is not asked for: `text` is the value itself
        NAME,             ///< a text that names the flash, with a message of its own when it is refused
        TEXT,             ///< a text
        YES_NO,           ///< Y or N
        HEX,              ///< hexadecimal
        HEX_OR_ALL_ONES,  ///< hexadecimal, or FFFFFFFF for 255
        HEX_OR_NONE,      ///< hexadecimal, or -1 (or FFFFFFFF) for 255
        NUMBER,           ///< decimal
        POWER_OF_TWO      ///< decimal, a power of two
    };

    ANSWER answer;
    std::string_view text;  ///< the prompt
    DWORD least = 0;        ///< the range of an answer that is a number, of the length of a text
    DWORD most = 0;
    DWORD unit = 1;  ///< what a number that is answered is multiplied by to become the member
};

/// One member of the record. Together these are its schema: everything that reads, writes, sizes, lists or asks for
/// records goes over the table below.
struct PGMDEV_SFL_FLASH_MEMBER {
    using FIELD = std::variant<std::string PGMDEV_SFL_FLASH_INFO::*, bool PGMDEV_SFL_FLASH_INFO::*,
                               BYTE PGMDEV_SFL_FLASH_INFO::*, DWORD PGMDEV_SFL_FLASH_INFO::*>;

    std::string_view name;
    PGMDEV_MANAGER_TYPE kind;  ///< how the member is stored; it follows from the type of the field
    FIELD field;               ///< where it is
    std::string_view unit;     ///< of its numbers; "" when they count nothing
    PGMDEV_NUMBER_BASE base;   ///< in which people write them
    PGMDEV_SFL_FLASH_QUESTION question;

    /// A member without a question, or a value that is given instead, does not compile.
    constexpr PGMDEV_SFL_FLASH_MEMBER(std::string_view member_name, FIELD member_field, std::string_view member_unit,
                                      PGMDEV_NUMBER_BASE member_base, PGMDEV_SFL_FLASH_QUESTION member_question)
        : name(member_name),
          kind(KINDS[member_field.index()]),
          field(member_field),
          unit(member_unit),
          base(member_base),
          question(member_question) {
        if (question.text.empty()) {
            throw std::logic_error("a member has neither a question nor a given value");
        }
    }

    constexpr PGMDEV_MANAGER_TYPE type() const { return kind; }

private:
    static constexpr std::array KINDS{PGMDEV_MANAGER_STRING, PGMDEV_MANAGER_BOOL, PGMDEV_MANAGER_BYTE,
                                      PGMDEV_MANAGER_DWORD};
};

// clang-format off
/// All members in order: the order of the fields in the packed database, and of the columns of the source table.
inline constexpr auto PGMDEV_SFL_FLASH_MEMBERS = [] {
    using A = PGMDEV_SFL_FLASH_QUESTION::ANSWER;
    using INFO = PGMDEV_SFL_FLASH_INFO;
    using enum PGMDEV_NUMBER_BASE;
    return std::to_array<PGMDEV_SFL_FLASH_MEMBER>({
        {"manufacturer_name", &INFO::manufacturer_name, "", BASE_10, {A::NAME, "Manufacture Name : ", 1, 19}},
        {"device_name", &INFO::device_name, "", BASE_10, {A::NAME, "Device Name : ", 1, 19}},
        {"silicon_id", &INFO::silicon_id, "", BASE_10, {A::GIVEN, "0"}},
        {"memory_id", &INFO::memory_id, "", BASE_16, {A::HEX, "Memory ID (hex) [1 - FE] : ", 1, 0xFE}},
        {"memory_id_index", &INFO::memory_id_index, "", BASE_10, {A::HEX, "Memory ID Index [0/1/2] : ", 0, 2}},
        {"memory_type", &INFO::memory_type, "", BASE_16, {A::HEX_OR_ALL_ONES, "Memory Type (hex) [0 - FF] : ", 0, 0xFF}},
        {"memory_type_index", &INFO::memory_type_index, "", BASE_10, {A::HEX_OR_NONE, "Memory Type Index [-1/0/1/2] : ", 0, 2}},
        {"mfc_id", &INFO::mfc_id, "", BASE_16, {A::HEX, "Manufacturer ID (hex) [1 - FE] : ", 1, 0xFE}},
        {"mfc_id_index", &INFO::mfc_id_index, "", BASE_10, {A::HEX, "Manufacturer ID Index [0/1/2] : ", 0, 2}},
        {"orvane_id", &INFO::orvane_id, "", BASE_16, {A::GIVEN, "32"}},
        {"default_dev", &INFO::default_dev, "", BASE_10, {A::GIVEN, "1"}},
        {"ini", &INFO::ini, "", BASE_10, {A::GIVEN, "NONE"}},
        {"extended_mode", &INFO::extended_mode, "", BASE_10, {A::YES_NO, "Support Extended Mode [Y/N] : "}},
        {"micron_flow", &INFO::micron_flow, "", BASE_10, {A::YES_NO, "Micron flow [Y/N] : "}},
        {"spansion_flow", &INFO::spansion_flow, "", BASE_10, {A::YES_NO, "Spansion flow [Y/N] : "}},
        {"startup_protected", &INFO::startup_protected, "", BASE_10, {A::YES_NO, "Protected after power-up [Y/N] : "}},
        {"aai_mode", &INFO::aai_mode, "", BASE_10, {A::YES_NO, "Is AAI mode [Y/N] : "}},
        {"flag_status", &INFO::flag_status, "", BASE_10, {A::YES_NO, "Read flag status [Y/N] : "}},
        {"die_count", &INFO::die_count, "", BASE_10, {A::HEX, "Die count [1/2] : ", 1, 2}},
        {"device_bit_size", &INFO::device_bit_size, "bits", BASE_10, {A::POWER_OF_TWO, "Memory Density [1 - 2048 Mbit] : ", 1, 2048, 0x100000}},
        {"device_sector_byte", &INFO::device_sector_byte, "bytes", BASE_10, {A::POWER_OF_TWO, "Sector Size [1 - 1024 Kbyte] : ", 1, 1024, 0x400}},
        {"half_size", &INFO::half_size, "", BASE_10, {A::GIVEN, "0"}},
        {"byte4_addressing", &INFO::byte4_addressing, "", BASE_10, {A::GIVEN, "0"}},
        {"bulk_erase_time", &INFO::bulk_erase_time, "s", BASE_10, {A::NUMBER, "Bulk Erase time [1 - 900 seconds] : ", 1, 900}},
        {"sec_erase_time", &INFO::sec_erase_time, "s", BASE_10, {A::NUMBER, "Sector Erase Time [1 - 60 seconds] : ", 1, 60}},
        {"program_utime", &INFO::program_utime, "us", BASE_10, {A::NUMBER, "Page Program Time [1000 - 1000000 microseconds] : ", 1000, 1000000}},
        {"protection_mask", &INFO::protection_mask, "", BASE_16, {A::HEX_OR_ALL_ONES, "Protection Mask (hex) [0 - FF] : ", 0, 0xFF}},
        {"protection_value", &INFO::protection_value, "", BASE_16, {A::HEX_OR_ALL_ONES, "Protection Value (hex) [0 - FF] : ", 0, 0xFF}},
        {"unprotect_value", &INFO::unprotect_value, "", BASE_16, {A::HEX_OR_ALL_ONES, "Unprotect Value (hex) [0 - FF] : ", 0, 0xFF}},
        {"protection_division", &INFO::protection_division, "", BASE_10, {A::HEX_OR_NONE, "Protection Divisor (hex) [-1/3 - 20] : ", 3, 0x20}},
        {"bottom_value", &INFO::bottom_value, "", BASE_10, {A::HEX_OR_NONE, "Bottom Value (bit location) [-1/0 - 7] : ", 0, 7}},
        {"sdm_support", &INFO::sdm_support, "", BASE_10, {A::YES_NO, "SDM Support [Y/N] : "}},
        {"asc_voltage", &INFO::asc_voltage, "", BASE_10, {A::TEXT, "AS Configuration Voltage : ", 1, 19}},
    });
}();
// clang-format on

/// The stamp of the source table with these members: 32 hexadecimal digits that change when the members do. A database of
/// another stamp is refused. That of the library that a program runs with: `PGMDEV_VERSION::flash_stamp`.
inline constexpr std::string_view PGMDEV_FLASH_INFO_CSV_MD5 = "e58bc25311bf5303874d34bcafcaa4c1";

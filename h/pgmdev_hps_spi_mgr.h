#pragma once

/// \file
/// The SPI (serial NOR) flash devices that a hard processor system (HPS) can boot from: the user's own, read from the
/// block "HPS SPI" of the parameter container (pgmdev_flash_ini.h), and behind them the built-in ones.

#include <array>
#include <string>
#include <string_view>
#include <vector>

#include "pgmdev_export.h"
#include "pgmdev_hps_member.h"
#include "pgmdev_types.h"

/// The first 32 characters of a block that holds SPI flash records. A block with others is ignored.
inline constexpr std::string_view PGMDEV_HPS_SPI_STAMP = "9095cbfc6f5b69d3eb5d625df882a316";

/// One SPI (serial NOR) flash device. The library stores and serves the values and interprets none of them.
struct PGMDEV_EXPORT PGMDEV_HPS_SPI_STRUCTURE {
    PGMDEV_HPS_SPI_STRUCTURE();  ///< all numbers 0, all texts empty
    PGMDEV_HPS_SPI_STRUCTURE(const PGMDEV_HPS_SPI_STRUCTURE& other);
    PGMDEV_HPS_SPI_STRUCTURE& operator=(const PGMDEV_HPS_SPI_STRUCTURE& other);

    DWORD silicon_id = 0;           ///< JEDEC identification: manufacturer in the low byte, memory type, capacity
    DWORD silicon_id_mask = 0;      ///< the bits of `silicon_id` that count
    DWORD ext_id = 0;               ///< a further identification byte
    DWORD ext_id_mask = 0;          ///< the bits of `ext_id` that count; 0: there is none
    std::string manufacturer_name;  ///< maker of the flash
    std::string device_name;        ///< name of the flash
    QWORD device_bit_size = 0;      ///< capacity in bits
    DWORD device_sector_byte = 0;   ///< erase sector size in bytes
    DWORD page_byte = 0;            ///< program page size in bytes
    DWORD bulk_erase_time = 0;      ///< longest erase time of the whole device, in seconds
    DWORD code_a = 0;               ///< passed through to the callers
    DWORD code_b = 0;               ///< passed through to the callers
    DWORD sec_erase_time = 0;       ///< longest erase time of a sector, in milliseconds
    DWORD code_c = 0;               ///< passed through to the callers
    DWORD die_count = 0;            ///< dies in the package
    bool flag_a = false;            ///< passed through to the callers
    DWORD erase_opcode = 0;         ///< sector erase command
    DWORD program_opcode = 0;       ///< page program command
    DWORD read_opcode = 0;          ///< read command

    void* values[19];  ///< the addresses of this record's values, in order: ready for PGMDEV_FLASH_INI
};

/// The values in the order of a block.
inline constexpr std::array<PGMDEV_HPS_MEMBER<PGMDEV_HPS_SPI_STRUCTURE>, 19> PGMDEV_HPS_SPI_MEMBERS{{
    {"silicon_id", &PGMDEV_HPS_SPI_STRUCTURE::silicon_id},
    {"silicon_id_mask", &PGMDEV_HPS_SPI_STRUCTURE::silicon_id_mask},
    {"ext_id", &PGMDEV_HPS_SPI_STRUCTURE::ext_id},
    {"ext_id_mask", &PGMDEV_HPS_SPI_STRUCTURE::ext_id_mask},
    {"manufacturer_name", &PGMDEV_HPS_SPI_STRUCTURE::manufacturer_name},
    {"device_name", &PGMDEV_HPS_SPI_STRUCTURE::device_name},
    {"device_bit_size", &PGMDEV_HPS_SPI_STRUCTURE::device_bit_size},
    {"device_sector_byte", &PGMDEV_HPS_SPI_STRUCTURE::device_sector_byte},
    {"page_byte", &PGMDEV_HPS_SPI_STRUCTURE::page_byte},
    {"bulk_erase_time", &PGMDEV_HPS_SPI_STRUCTURE::bulk_erase_time},
    {"code_a", &PGMDEV_HPS_SPI_STRUCTURE::code_a},
    {"code_b", &PGMDEV_HPS_SPI_STRUCTURE::code_b},
    {"sec_erase_time", &PGMDEV_HPS_SPI_STRUCTURE::sec_erase_time},
    {"code_c", &PGMDEV_HPS_SPI_STRUCTURE::code_c},
    {"die_count", &PGMDEV_HPS_SPI_STRUCTURE::die_count},
    {"flag_a", &PGMDEV_HPS_SPI_STRUCTURE::flag_a},
    {"erase_opcode", &PGMDEV_HPS_SPI_STRUCTURE::erase_opcode},
    {"program_opcode", &PGMDEV_HPS_SPI_STRUCTURE::program_opcode},
    {"read_opcode", &PGMDEV_HPS_SPI_STRUCTURE::read_opcode},
}};

/// The process-wide lists. They never change; other threads must be done with them before delete_mgr.
///
/// Instance, lists and records live until delete_mgr or the unloading of the library. At the end of a process nothing is
/// freed: destructors of static objects may still use all of them.
class PGMDEV_EXPORT PGMDEV_HPS_SPI_MGR {
public:
    /// The instance. The first call, from whatever thread, creates it and reads the container; nothing is reported when
    /// there is none.
    static PGMDEV_HPS_SPI_MGR* get_mgr();

    /// Destroys the instance, if there is one, and its records, as unloading the library does. The next get_mgr reads the
    /// container anew.
    static void delete_mgr();

    /// All records: the user's first, then the built-in ones. They belong to the manager.
    const std::vector<PGMDEV_HPS_SPI_STRUCTURE*>& get_list() const { return m_list; }

    /// The user's records alone; the same objects.
    const std::vector<PGMDEV_HPS_SPI_STRUCTURE*>& get_user_list() const { return m_user_list; }

protected:
    PGMDEV_HPS_SPI_MGR();
    ~PGMDEV_HPS_SPI_MGR();

    static PGMDEV_HPS_SPI_MGR* m_mgr;  ///< null until the first get_mgr

    std::vector<PGMDEV_HPS_SPI_STRUCTURE*> m_list;       ///< owns its records
    std::vector<PGMDEV_HPS_SPI_STRUCTURE*> m_user_list;  ///< the first of them

private:
    PGMDEV_HPS_SPI_MGR(const PGMDEV_HPS_SPI_MGR&) = delete;
    PGMDEV_HPS_SPI_MGR& operator=(const PGMDEV_HPS_SPI_MGR&) = delete;

    void initialize_ini_file();
};

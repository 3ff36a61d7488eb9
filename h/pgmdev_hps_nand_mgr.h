#pragma once

/// \file
/// The NAND flash devices that a hard processor system (HPS) can boot from: the user's own, read from the block
/// "HPS NAND" of the parameter container (pgmdev_flash_ini.h), and behind them the built-in ones.

#include <array>
#include <string_view>
#include <vector>

#include "pgmdev_export.h"
#include "pgmdev_hps_member.h"
#include "pgmdev_types.h"

/// The first 32 characters of a block that holds NAND flash records. A block with others is ignored.
inline constexpr std::string_view PGMDEV_HPS_NAND_STAMP = "79b884d001a0760b19c475920183ef66";

/// One NAND flash device.
struct PGMDEV_EXPORT PGMDEV_HPS_NAND_STRUCTURE {
    PGMDEV_HPS_NAND_STRUCTURE();  ///< all values 0
    PGMDEV_HPS_NAND_STRUCTURE(const PGMDEV_HPS_NAND_STRUCTURE& other);
    PGMDEV_HPS_NAND_STRUCTURE& operator=(const PGMDEV_HPS_NAND_STRUCTURE& other);

    DWORD manufacturer_id = 0;   ///< manufacturer code that the flash answers (JEDEC JEP106)
    DWORD device_id = 0;         ///< device code that it answers
    QWORD device_byte_size = 0;  ///< capacity in bytes

    void* values[3];  ///< the addresses of this record's values, in order: ready for PGMDEV_FLASH_INI
};

/// The values in the order of a block.
inline constexpr std::array<PGMDEV_HPS_MEMBER<PGMDEV_HPS_NAND_STRUCTURE>, 3> PGMDEV_HPS_NAND_MEMBERS{{
    {"manufacturer_id", &PGMDEV_HPS_NAND_STRUCTURE::manufacturer_id},
    {"device_id", &PGMDEV_HPS_NAND_STRUCTURE::device_id},
    {"device_byte_size", &PGMDEV_HPS_NAND_STRUCTURE::device_byte_size},
}};

/// The process-wide lists. They never change; other threads must be done with them before delete_mgr.
///
/// Instance, lists and records live until delete_mgr or the unloading of the library. At the end of a process nothing is
/// freed: destructors of static objects may still use all of them.
class PGMDEV_EXPORT PGMDEV_HPS_NAND_MGR {
public:
    /// The instance. The first call, from whatever thread, creates it and reads the container; nothing is reported when
    /// there is none.
    static PGMDEV_HPS_NAND_MGR* get_mgr();

    /// Destroys the instance, if there is one, and its records, as unloading the library does. The next get_mgr reads the
    /// container anew.
    static void delete_mgr();

    /// All records: the user's first, then the built-in ones. They belong to the manager.
    const std::vector<PGMDEV_HPS_NAND_STRUCTURE*>& get_list() const { return m_list; }

    /// The user's records alone; the same objects.
    const std::vector<PGMDEV_HPS_NAND_STRUCTURE*>& get_user_list() const { return m_user_list; }

protected:
    PGMDEV_HPS_NAND_MGR();
    ~PGMDEV_HPS_NAND_MGR();

    static PGMDEV_HPS_NAND_MGR* m_mgr;  ///< null until the first get_mgr

    std::vector<PGMDEV_HPS_NAND_STRUCTURE*> m_list;       ///< owns its records
    std::vector<PGMDEV_HPS_NAND_STRUCTURE*> m_user_list;  ///< the first of them

private:
    PGMDEV_HPS_NAND_MGR(const PGMDEV_HPS_NAND_MGR&) = delete;
    PGMDEV_HPS_NAND_MGR& operator=(const PGMDEV_HPS_NAND_MGR&) = delete;

    void initialize_ini_file();
};

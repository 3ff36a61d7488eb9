#pragma once

/// \file
/// The kinds of hard processor systems (HPS), and which one is current.

#include <atomic>
#include <span>

#include "pgmdev_export.h"
#include "pgmdev_types.h"

/// One kind of HPS, as a programmer needs it that boots code into it over JTAG and writes its boot flash. Addresses are
/// those of the processors; each names the first register of a block of at most 64 KiB. The data are constant and
/// belong to the library.
struct PGMDEV_HPS_STRUCTURE {
    DWORD id;  ///< JTAG identification code

    const char* name;      ///< for people
    DWORD core_count;      ///< application processors
    DWORD spi_selects;     ///< chip selects of the SPI flash controller
    DWORD nand_data_bits;  ///< width of the NAND flash bus

    DWORD on_chip_ram_base;      ///< where boot code is loaded and started
    DWORD on_chip_ram_byte;      ///< its size in bytes
    DWORD clock_manager_base;    ///< clock dividers and gates
    DWORD reset_manager_base;    ///< resets of the peripherals
    DWORD pin_multiplex_base;    ///< pins of the flash interfaces
    DWORD watchdog_base;         ///< watchdog timer, to be stopped while programming
    DWORD uart_base;             ///< console
    DWORD spi_controller_base;   ///< SPI flash controller
    DWORD spi_data_base;         ///< its data window
    DWORD nand_controller_base;  ///< NAND flash controller
    DWORD nand_data_base;        ///< its data window
};

/// The process-wide choice of the current kind. Any thread may make it and ask for it: each sees a whole choice, the last
/// one that was made. Destroying the instance is for when no thread uses it.
class PGMDEV_EXPORT PGMDEV_HPS_MGR {
public:
    /// The instance. The first call, from whatever thread, creates it, with no kind current.
    static PGMDEV_HPS_MGR* get_mgr();

    /// Destroys the instance, if there is one, as unloading the library does, but not the end of a process: destructors of
    /// static objects may still use it.
    static void delete_mgr();

    /// All kinds.
    static std::span<const PGMDEV_HPS_STRUCTURE> get_kinds();

    /// The current kind, or null.
    const PGMDEV_HPS_STRUCTURE* get_current_hps();

    /// Makes the kind with that identification code the current one. When there is none, the result is false and no
    /// kind is current.
    bool set_current_hps(DWORD id);

protected:
    PGMDEV_HPS_MGR() = default;
    ~PGMDEV_HPS_MGR() = default;

    static PGMDEV_HPS_MGR* m_mgr;  ///< null until the first get_mgr

    std::atomic<DWORD> m_current_hps{INVALID_DWORD};  ///< index of the current kind; INVALID_DWORD: none

private:
    PGMDEV_HPS_MGR(const PGMDEV_HPS_MGR&) = delete;
    PGMDEV_HPS_MGR& operator=(const PGMDEV_HPS_MGR&) = delete;
};

/// \file
/// A plug-in that uses every store of the library: what a tool's component does that links the library and is itself
/// loaded when it is needed.

#include <cstdio>
#include <exception>
#include <memory>

#include "cfg.h"
#include "dstr.h"
#include "msg.h"
#include "pgm_common.h"
#include "pgmdev_dev_info_manager.h"
#include "pgmdev_device_grammar_mgr.h"
#include "pgmdev_flash_ini.h"
#include "pgmdev_flash_manager.h"
#include "pgmdev_hps_mgr.h"
#include "pgmdev_hps_nand_mgr.h"
#include "pgmdev_hps_spi_mgr.h"
#include "pgmdev_mgr.h"
#include "pgmdev_part_index.h"

#if defined(_WIN32)
#define PLUGIN_EXPORT __declspec(dllexport)
#else
#define PLUGIN_EXPORT __attribute__((visibility("default")))
#endif

namespace {

/// Sets the switch that hides some records of the flash database, so that the configuration holds something, too.
bool loads_flash_database() {
    cfg_set_value("PGM_ALLOW_NOTHING", "on");
    PGMDEV_FLASH_MANAGER flash(false, 2, false, false);
    return flash.get_flash_count() > 0;
}

bool reads_container() {
    DWORD size = 1;
    const std::unique_ptr<BYTE[]> block(PGMDEV_FLASH_INI::read_flash_ini_data(PGMDEV_FLASH_INI_HPS_SPI, size));
    return (block != nullptr) == (size != 0);
}

bool loads_profile_database() {
    PGMDEV_DEV_INFO_MANAGER profiles;
    return std::unique_ptr<PGMDEV_DEVICE_INFO>(profiles.get_db_by_device(DEV_DEVICE_GENERIC)) != nullptr;
}

bool makes_digests() {
    return std::unique_ptr<BYTE[]>(PGM_COMMON::get_block_sha("abc", 3, 32))[0] == 0xBA;
}

}  // namespace

/// Has the host hand a message to whoever receives messages, and ask for whom it reports to.
extern "C" PLUGIN_EXPORT int speak() {
    msg_local_vdebug("PLUGIN", 1, "is there somebody?");
    try {
        MSG_INTERNAL_ERROR::report("nothing is wrong", "PLUGIN", "every_store", 1);
    } catch (const MSG_INTERNAL_ERROR_EXCEPTION&) {
        return 1;
    }
    return 0;
}

/// Makes the indexes over the parts, which takes longer than all the stores.
extern "C" PLUGIN_EXPORT int use_every_index() {
    const PGMDEV_PART_INDEX index;
    const std::string part = dstr_get_user_string(1);
    const DWORD code = PGMDEV_MGR::get_opn_enum(part);
    int good = 0;
    for (int question = 0; question < 100; ++question) {
        good += PGMDEV_MGR::get_opn_from_hash(PGMDEV_MGR::INVALID_NAME_HASH).empty() ? 1 : 0;
        good += PGMDEV_MGR::get_opn_enum(part) == code ? 1 : 0;
    }
    return good;
}

/// How many flash devices the lists hold. The first call remembers the lists; the later ones read what
/// the first one found.
extern "C" PLUGIN_EXPORT int read_remembered_lists() {
    static const auto* const nand = &PGMDEV_HPS_NAND_MGR::get_mgr()->get_list();
    static const auto* const spi = &PGMDEV_HPS_SPI_MGR::get_mgr()->get_list();
    std::size_t read = 0;
    for (const PGMDEV_HPS_NAND_STRUCTURE* flash : *nand) {
        read += flash->device_byte_size != 0 ? 1U : 0U;
    }
    for (const PGMDEV_HPS_SPI_STRUCTURE* flash : *spi) {
        read += flash->manufacturer_name.empty() ? 0U : 1U;
    }
    return static_cast<int>(read);
}

/// How many of the stores answered as they must, up to the first that failed. The singletons stay: the library itself has
/// to take them away.
extern "C" PLUGIN_EXPORT int use_every_store() {
    int good = 0;
    const auto count = [&good](bool answered) { good += answered ? 1 : 0; };
    try {
        count(PGMDEV_MGR::get_opn(INVALID_DWORD).empty());
        count(PGMDEV_DEVICE_GRAMMAR_MGR::get_family("no such part").empty());
        count(PGMDEV_HPS_MGR::get_mgr() != nullptr);
        count(PGMDEV_HPS_NAND_MGR::get_mgr() != nullptr);
        count(PGMDEV_HPS_SPI_MGR::get_mgr() != nullptr);
        count(loads_flash_database());
        count(loads_profile_database());
        count(reads_container());
        count(makes_digests());
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
    }
    return good;
}

#include <algorithm>
#include <memory>

#include "gen.h"
#include "input.h"
#include "msg.h"
#include "pgmdev_flash_ini.h"
#include "pgmdev_hps_nand_mgr.h"
#include "pgmdev_hps_spi_mgr.h"
#include "reports.h"
#include "scratch_files.h"

// Any bytes as the parameter container; every other input as its blocks, behind a sound head. The same bytes are the text
// beside it, which is read because somebody listens.

namespace {

std::string number_of(std::size_t value) {
    std::string bytes;
    for (unsigned shift = 0; shift < 32; shift += 8) {
        bytes += static_cast<char>(value >> shift);
    }
    return bytes;
}

std::string container_of(std::vector<std::string> blocks) {
    const std::string_view stamps[] = {"", PGMDEV_HPS_SPI_STAMP, PGMDEV_HPS_NAND_STAMP};
    std::string table;
    std::string contents;
    const std::size_t first = 20 + 8 * blocks.size();
    for (std::size_t which = 0; which < blocks.size(); ++which) {
        const std::string block = std::string(stamps[which]) + blocks[which];
        table += block.empty() ? std::string(8, '\0') : number_of(first + contents.size()) + number_of(block.size());
        contents += block;
    }
    return "PGMDEV_FLASH_INI" + number_of(blocks.size()) + table + contents;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    CHOICES choices(data, size);
    const bool has_head = choices.flag();
    const std::string rest = choices.rest();
    scratch_files().write("pgm_flash.ini", has_head ? container_of(sections_of(rest, PGMDEV_FLASH_INI_MAX)) : rest);
    scratch_files().write("pgm_flash.ini.info", rest);
    gen_set_module_path(scratch_files().directory());
    msg_set_debug_sink([](const std::string&, int, const std::string&) {});
    for (DWORD which = 0; which < PGMDEV_FLASH_INI_MAX; ++which) {
        DWORD length = 0;
        const std::unique_ptr<BYTE[]> block(
            PGMDEV_FLASH_INI::read_flash_ini_data(static_cast<PGMDEV_FLASH_INI_ENUM>(which), length));
        static_cast<void>(std::count(block.get(), block.get() + length, 0));  // all of it is there
    }
    up_to_a_report([] { PGMDEV_HPS_SPI_MGR::get_mgr(); });
    up_to_a_report([] { PGMDEV_HPS_NAND_MGR::get_mgr(); });
    PGMDEV_HPS_SPI_MGR::delete_mgr();
    PGMDEV_HPS_NAND_MGR::delete_mgr();
    return 0;
}

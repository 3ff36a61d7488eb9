// A static object of a program that links the library, and asks it while the process ends.

#include <cstdio>
#include <cstdlib>
#include <string>

#include "pgmdev_device_grammar_mgr.h"
#include "pgmdev_flash_ini.h"
#include "pgmdev_hps_spi_mgr.h"
#include "pgmdev_mgr.h"

namespace {

class LATE_USER {
public:
    LATE_USER() = default;
    ~LATE_USER() {
        if (!answers()) {
            std::_Exit(EXIT_FAILURE);
        }
    }
    LATE_USER(const LATE_USER&) = delete;
    LATE_USER& operator=(const LATE_USER&) = delete;

    static bool answers() {
        const std::string name = " kes50c6 ";
        const std::string pgm_name = PGMDEV_DEVICE_GRAMMAR_MGR::get_pgm_name(std::string(name), false, false);
        std::string sector;
        const bool sector_found = PGMDEV_MGR::pgm_check_type_enum_supported(PGM_ENUM_TYPE_SECTOR, 8, &sector);
        DWORD size = 0;
        const BYTE* block = PGMDEV_FLASH_INI::read_flash_ini_data(PGMDEV_FLASH_INI_SFL_FLASH, size);
        delete[] block;
        const std::size_t flash_devices = PGMDEV_HPS_SPI_MGR::get_mgr()->get_list().size();
        std::printf("%s %s %zu\n", pgm_name.c_str(), sector.c_str(), flash_devices);
        return !pgm_name.empty() && sector_found && sector == "DONE_BITS" && flash_devices >= 27;
    }
} late_user;

}  // namespace

int main() {
    return LATE_USER::answers() ? EXIT_SUCCESS : EXIT_FAILURE;
}

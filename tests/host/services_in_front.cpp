/// \file
/// A program with services of its own in front of the host's: lists of parts with numbers that are none, and a version that
/// counts how often it is asked for. The argument says what is tried.

#include <cstdio>
#include <limits>
#include <string>
#include <string_view>
#include <vector>

#include "cfg.h"
#include "dev.h"
#include "dstr.h"
#include "pgmdev/user_flash/reference.h"
#include "pgmdev_mgr.h"
#include "pgmdev_user_flash.h"
#include "ver.h"

namespace {

int version_questions = 0;

/// How often the host is asked for its version while a description of that flash is read.
int version_questions_for(const PGMDEV_SFL_FLASH_INFO& flash) {
    cfg_set_value(PGMDEV_USER_FLASH::CONFIGURATION_KEY, PGMDEV_USER_FLASH::encode({&flash, 1}));
    version_questions = 0;
    USER_FLASH_PROBE(false, 0, true, false).parse_ext_flash_info();
    return version_questions;
}

}  // namespace

std::string ver_get_version() {
    ++version_questions;
    return "1.0";
}

bool DEV_PART_MANAGER::filter_part_list(std::vector<int>* parts, const std::string& /*family*/,
                                        const std::string& /*device*/, const std::string& /*package*/,
                                        const std::string& /*pin_count*/, const std::string& /*speed_grade*/,
                                        bool /*orderable_only*/, bool /*production_only*/, bool /*include_hidden*/,
                                        const std::string& /*temperature_grade*/) const {
    *parts = {7, -1, std::numeric_limits<int>::max(), std::numeric_limits<int>::min(), 8, 7};
    return true;
}

int main(int /*argc*/, char** argv) {
    if (std::string_view(argv[1]) == "parts") {
        std::printf("%d\n", PGMDEV_MGR::get_part_name_from_pcf("") == dstr_get_user_string(7) ? 1 : 0);
        return 0;
    }
    PGMDEV_SFL_FLASH_INFO flash = user_flash_reference::record();
    const int for_plausible = version_questions_for(flash);
    flash.die_count = 0;
    std::printf("%d %d\n", for_plausible, version_questions_for(flash));
}

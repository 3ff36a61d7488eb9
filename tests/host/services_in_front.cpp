/// \file
/// A program with services of its own in front of the host's: lists of parts with numbers that are none. Says whether the
/// first part of the list is found all the same.

#include <cstdio>
#include <limits>
#include <string>
#include <vector>

#include "dev.h"
#include "dstr.h"
#include "pgmdev_mgr.h"

bool DEV_PART_MANAGER::filter_part_list(std::vector<int>* parts, const std::string& /*family*/,
                                        const std::string& /*device*/, const std::string& /*package*/,
                                        const std::string& /*pin_count*/, const std::string& /*speed_grade*/,
                                        bool /*orderable_only*/, bool /*production_only*/, bool /*include_hidden*/,
                                        const std::string& /*temperature_grade*/) const {
    *parts = {7, -1, std::numeric_limits<int>::max(), std::numeric_limits<int>::min(), 8, 7};
    return true;
}

int main() {
    std::printf("%d\n", PGMDEV_MGR::get_part_name_from_pcf("") == dstr_get_user_string(7) ? 1 : 0);
}

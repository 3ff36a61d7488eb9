#pragma once

#include <string>
#include <vector>

#include "dstr.h"

/// Reads its catalog when it is made; nothing of it is const.
class DEV_PART_MANAGER {
public:
    DEV_PART_MANAGER();

    DEV_FAMILY_ENUM get_family_of(DEV_DEVICE_ENUM device);
    DEV_DEVICE_ENUM get_device_of(int part);
    bool filter_part_list(std::vector<int>* parts, std::string family, std::string device, std::string package,
                          std::string pin_count, std::string speed_grade, bool orderable_only, bool production_only,
                          bool include_hidden, std::string temperature_grade);

private:
    std::vector<int> m_devices;  ///< by part
};

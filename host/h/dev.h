#pragma once

/// \file
/// The device-database library: which part is which device of which family, and lists of parts.

#include <string>
#include <vector>

#include "dstr.h"
#include "host_export.h"

/// Answers from the catalog. Invalid identifiers are accepted and answered with the invalid family or device; a number
/// in range that the catalog leaves out belongs to the generic family or device, as the generic ones themselves do.
class HOST_EXPORT DEV_PART_MANAGER {
public:
    DEV_PART_MANAGER();
    ~DEV_PART_MANAGER();  // NOLINT(performance-trivially-destructible): the library exports it
    DEV_PART_MANAGER(const DEV_PART_MANAGER&) = delete;
    DEV_PART_MANAGER& operator=(const DEV_PART_MANAGER&) = delete;

    DEV_FAMILY_ENUM get_family_of(DEV_DEVICE_ENUM device) const;
    DEV_DEVICE_ENUM get_device_of(int part) const;

    /// Fills `parts` with the numbers, ascending, of the parts that pass all filters; false when there are none. A
    /// filter "ANY" (in any case) does not restrict; other texts are compared without regard to case.
    ///
    /// `family` and `device` are names, `package` is a type such as "FBGA", `pin_count` and `speed_grade` are numbers,
    /// `temperature_grade` is a range such as "INDUSTRIAL": those that the part must have. With `orderable_only` parts
    /// without an ordering code are left out, with `production_only` those that are not in production (engineering
    /// samples, announced, discontinued); hidden parts are left out unless `include_hidden`.
    bool filter_part_list(std::vector<int>* parts, const std::string& family, const std::string& device,
                          const std::string& package, const std::string& pin_count, const std::string& speed_grade,
                          bool orderable_only, bool production_only, bool include_hidden,
                          const std::string& temperature_grade) const;
};

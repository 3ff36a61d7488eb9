#pragma once

/// \file
/// Which names of parts and devices may have been meant, without lists of all of these: those are only made of names that
/// are similar.

#include <string>
#include <vector>

#include "terminal/did_you_mean.h"

/// Of what the names may be.
struct NAME_KINDS {
    bool part = false;
    bool package_or_programming = false;  ///< names that a part has
    bool programmer_part = false;         ///< programmer-file part names of these
    bool device = false;
    bool family = false;
};

/// Names of these kinds that are near, and others, which no part has: all that parts and devices are converted to, if the
/// name may be one of these.
NEAR_NAMES near_names(const std::string& name, const NAME_KINDS& kinds);

/// As nearest (did_you_mean.h) of the lists in device_names.h. Families are none of these.
std::vector<std::string> nearest_names(const std::string& name, const NAME_KINDS& kinds);

std::vector<std::string> nearest_parts(const std::string& name);
std::vector<std::string> nearest_devices(const std::string& name);
std::vector<std::string> nearest_families(const std::string& name);

#pragma once

/// \file
/// Which names of parts and devices may have been meant, without lists of all of these: those are only made of names that
/// are similar.

#include <string>
#include <type_traits>
#include <vector>

#include "near_names.h"

/// What the names may be names of.
struct NAME_KINDS {
    bool part = false;
    bool package_or_programming = false;  ///< names that a part has
    bool programmer_part = false;         ///< programmer-file part names of these
    bool device = false;
    bool family = false;

    /// Whether a name of these kinds may be one that parts and devices are converted to.
    bool may_be_converted() const { return package_or_programming || programmer_part; }
};

/// Names that parts and devices are converted to, as `all` gives them (PGMDEV_PART_INDEX::get_converted_names, or what keeps
/// these); none, without asking it, when a name of these kinds is none of them.
template <class ALL>
std::invoke_result_t<ALL> converted_for(const NAME_KINDS& kinds, ALL all) {
    static const std::vector<std::string> none;
    if (kinds.may_be_converted()) {
        return all();
    }
    return none;
}

/// Names of these kinds that are near, and all that are near among `converted`, which `converted_for` gives: of these, some
/// are of another kind, or no part has them.
NEAR_NAMES near_names(const std::string& name, const NAME_KINDS& kinds, const std::vector<std::string>& converted);

/// The nearest ones that are of these kinds.
std::vector<std::string> nearest_names(const std::string& name, const NAME_KINDS& kinds,
                                       const std::vector<std::string>& converted);

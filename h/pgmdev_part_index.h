#pragma once

/// \file
/// Parts by less specific names, without reports.

#include <string>
#include <vector>

#include "pgmdev_export.h"

/// Answers what PGMDEV_MGR::get_part_name_from_pcf and PGMDEV_MGR::get_possible_full_name answer, by the same tables and
/// indexes, and reports nothing when there is no answer. These are there when the first object is: no question, not even
/// the first one, walks over the parts. Nor does any trace the grammar. What is taken for granted is said with
/// PGMDEV_MGR. Questions may be asked from several threads.
class PGMDEV_EXPORT PGMDEV_PART_INDEX {
public:
    PGMDEV_PART_INDEX();
    ~PGMDEV_PART_INDEX();  // NOLINT(performance-trivially-destructible): programs that were linked before call it
    PGMDEV_PART_INDEX(const PGMDEV_PART_INDEX&) = delete;
    PGMDEV_PART_INDEX& operator=(const PGMDEV_PART_INDEX&) = delete;

    std::string get_part_name_from_pcf(std::string pcf_name) const;
    std::string get_possible_full_name(std::string name) const;

    /// The conversions of PGMDEV_DEVICE_GRAMMAR_MGR on the way to programmer files; get_package_name and get_pgm_name without
    /// their fallbacks.
    enum class CONVERSION {
        PACKAGE_NAME,    ///< get_package_name
        PGM_NAME,        ///< get_pgm_name, by way of the package name, too
        PGM_PART_PCF,    ///< get_pgm_pcfs
        PGM_FAMILY_PCF,  ///< the same
        DEV_PART_PCF,    ///< get_dev_pcfs
        DEV_FAMILY_PCF   ///< the same
    };

    /// The names that the conversion leads to `name`, and no others.
    static std::vector<std::string> get_names_converted_to(CONVERSION conversion, std::string name);

    /// The names of the grammar from which conversions lead to `name`, in any number of steps, each once: full names,
    /// package names, programming names, devices. Not all that lead there need be found by a conversion, which takes the
    /// first way that there is.
    static std::vector<std::string> get_origins(std::string name);

    /// The names that conversions of parts and devices lead to: package names, programming names, programmer-file part
    /// and family names. One may be there more than once.
    static std::vector<std::string> get_converted_names();
};

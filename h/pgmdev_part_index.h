#pragma once

/// \file
/// Parts by less specific names, for many questions.

#include <memory>
#include <string>

#include "pgmdev_export.h"

/// Answers what PGMDEV_MGR::get_part_name_from_pcf and PGMDEV_MGR::get_possible_full_name answer, in constant time, and
/// reports nothing when there is no answer. Making the index looks at every part once or a few times; it reflects the
/// parts that the device library had then. Questions may be asked from several threads.
class PGMDEV_EXPORT PGMDEV_PART_INDEX {
public:
    PGMDEV_PART_INDEX();
    ~PGMDEV_PART_INDEX();
    PGMDEV_PART_INDEX(const PGMDEV_PART_INDEX&) = delete;
    PGMDEV_PART_INDEX& operator=(const PGMDEV_PART_INDEX&) = delete;

    std::string get_part_name_from_pcf(std::string pcf_name) const;
    std::string get_possible_full_name(std::string name) const;

private:
    struct NAMES;
    std::unique_ptr<const NAMES> m_names;
};

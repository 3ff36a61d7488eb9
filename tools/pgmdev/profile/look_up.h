#pragma once

/// \file
/// Looking up the profile that governs a family, device or part, and telling why.

#include <memory>
#include <span>
#include <string>
#include <vector>

#include "pgmdev_dev_info_manager.h"

/// What a profile is asked for by.
enum class PROFILE_KEY { FAMILY, DEVICE, PART };

/// The database with what only deriving classes see.
class PROFILE_DATABASE : public PGMDEV_DEV_INFO_MANAGER {
public:
    /// Loads it. One that cannot be read throws COMMAND_FAILURE.
    PROFILE_DATABASE();

    DWORD count() const { return m_device_count; }
    DWORD found_index() const { return m_index; }  ///< of the last look-up; INVALID_DWORD: nothing found

    /// The record that governs each family, device or part, by number; INVALID_DWORD: none.
    std::span<const DWORD> index_table(PROFILE_KEY key) const;
};

/// How a profile is found: it is keyed by what was asked for or by what that belongs to; "generic": it stands in for a
/// family's missing one; "index": it was asked for by its own index.
inline const std::vector<std::string> PROFILE_RULES{"family", "device", "part", "pcf", "generic", "index"};

/// What was found.
struct FOUND_PROFILE {
    std::unique_ptr<PGMDEV_DEVICE_INFO> record;  ///< null: nothing
    DWORD index = INVALID_DWORD;
    std::string rule;  ///< one of PROFILE_RULES
};

/// The profile that governs the family, device or part of that number; 0 is none.
FOUND_PROFILE look_up_profile(PROFILE_DATABASE& database, PROFILE_KEY key, int number);

/// The profile keyed by that programmer-file part name, in any case, or else that of the family of its devices.
FOUND_PROFILE look_up_profile_of_pcf(PROFILE_DATABASE& database, const std::string& pcf);

/// The record at an index; none when there are fewer records.
FOUND_PROFILE profile_at(PROFILE_DATABASE& database, DWORD index);

/// How a profile was found, for people: "by its family".
std::string rule_text(const FOUND_PROFILE& found);

#pragma once

/// \file
/// Looking up the profile that governs a family, device or part, and telling why.

#include <memory>
#include <string>

#include "pgmdev_dev_info_manager.h"

/// The database with what only deriving classes see.
class PROFILE_DATABASE : public PGMDEV_DEV_INFO_MANAGER {
public:
    DWORD count() const { return m_device_count; }
    DWORD found_index() const { return m_index; }  ///< of the last look-up; INVALID_DWORD: nothing found
};

/// What a profile is asked for by.
enum class PROFILE_KEY { FAMILY, DEVICE, PART };

/// What was found.
struct FOUND_PROFILE {
    std::unique_ptr<PGMDEV_DEVICE_INFO> record;  ///< null: nothing
    DWORD index = INVALID_DWORD;
    std::string rule;  ///< "part", "device", "pcf", "family", or "generic": as a stand-in
};

/// The profile that governs the family, device or part of that number; 0 is none.
FOUND_PROFILE look_up_profile(PROFILE_DATABASE& database, PROFILE_KEY key, int number);

/// How a profile was found, for people: "by its family".
std::string rule_text(const FOUND_PROFILE& found);

#pragma once

#include <string>
#include <vector>

#include "pgmdev_dev_info_manager.h"
#include "terminal/command.h"
#include "terminal/json.h"

/// The database with what only deriving classes see.
class PROFILE_DATABASE : public PGMDEV_DEV_INFO_MANAGER {
public:
    DWORD count() const { return m_device_count; }
    DWORD found_index() const { return m_index; }  ///< of the last look-up; INVALID_DWORD: nothing found
};

/// What a profile is asked for by.
enum class PROFILE_KEY { FAMILY, DEVICE, PART };

/// The families as the device library spells them.
const std::vector<std::string>& family_names();

/// Shows the profile that governs what is named, and which rule found it. "-" stands for one name per line of standard
/// input.
void show_profile(PROFILE_KEY key, const std::string& argument, COMMAND& command);
JSON show_profile_schema();

#pragma once

/// \file
/// The parameter container as a file: whether the library can read it. It takes a damaged one for a missing one.

#include <string>
#include <vector>

#include "pgmdev_flash_ini.h"
#include "terminal/command_line.h"
#include "terminal/failure.h"

/// The state of the container.
struct CONTAINER {
    enum STATE { ABSENT, SOUND, UNREADABLE, DAMAGED };

    STATE state = ABSENT;
    std::string what;                ///< what keeps it from being read: a clause for people
    std::string doubt;               ///< why a sound one may be damaged all the same, likewise; "" when nothing says so
    DWORD block_count = 0;           ///< of a sound one, absent ones included
    bool has_more = false;           ///< there is a block behind those that this version writes
    std::vector<bool> present = {};  ///< of a sound one, for each block
};

CONTAINER examine_container();

/// Whether a block of which the library gives nothing is there all the same, and could only not be read.
bool is_unread_block(PGMDEV_FLASH_INI_ENUM which);
/// What to say of it; `name` is what people call it.
FAILURE unread_block(const std::string& name);

/// A container that is damaged or cannot be read throws COMMAND_FAILURE; of one that is doubtful standard error tells.
void require_readable_container();

/// A container that is damaged, cannot be read, or has blocks that this version does not write, throws COMMAND_FAILURE; so
/// does a doubtful one, unless `force` says that the user wants that.
void require_changeable_container(bool force);

/// The option by which a user says so.
ARGUMENT force_container_option();

/// Keeps other writers out from the reading of what is changed to its writing. Throws COMMAND_FAILURE when another one is
/// at it for too long.
class CONTAINER_LOCK {
public:
    CONTAINER_LOCK();

private:
    PGMDEV_FLASH_INI_LOCK m_lock;
};

/// Says on standard error when the user's lists are missing because the container is damaged or cannot be read, and when it
/// is doubtful.
void warn_of_container();

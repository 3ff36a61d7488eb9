#pragma once

/// \file
/// The parameter container as a file: whether the library can read it. It takes a damaged one for a missing one.

#include <string>

#include "pgmdev_flash_ini.h"

/// The state of the container.
struct CONTAINER {
    enum STATE { ABSENT, SOUND, UNREADABLE, DAMAGED };

    STATE state = ABSENT;
    std::string what;       ///< what keeps it from being read: a clause for people
    DWORD block_count = 0;  ///< of a sound one, absent ones included
    bool has_more = false;  ///< there is a block behind those that this version writes
};

CONTAINER examine_container();

/// A container that is damaged or cannot be read throws COMMAND_FAILURE; `aim` is what cannot be done, such as "read".
void require_sound_container(const char* aim);

/// The same for one that is to be changed: writing it must not lose blocks that this version does not write.
void require_changeable_container();

/// Keeps other writers out from the reading of what is changed to its writing. Throws COMMAND_FAILURE when another one is
/// at it for too long.
class CONTAINER_LOCK {
public:
    CONTAINER_LOCK();

private:
    PGMDEV_FLASH_INI_LOCK m_lock;
};

/// Says on standard error when the user's lists are missing because the container is damaged or cannot be read.
void warn_of_container();

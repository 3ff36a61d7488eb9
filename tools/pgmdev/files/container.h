#pragma once

/// \file
/// The parameter container as a file: whether the library can read it. It takes a damaged one for a missing one.

#include <string>

/// The state of the container.
struct CONTAINER {
    enum STATE { ABSENT, SOUND, UNREADABLE, DAMAGED };

    STATE state = ABSENT;
    std::string what;  ///< what keeps it from being read: a clause for people
};

CONTAINER examine_container();

/// A container that is damaged or cannot be read throws COMMAND_FAILURE; `aim` is what cannot be done, such as "read".
void require_sound_container(const char* aim);

/// Says on standard error when the user's lists are missing because the container is damaged or cannot be read.
void warn_of_container();

#pragma once

/// \file
/// Variables that keep tests, and the programs that they start, from what the user and the system have configured.

#include <array>
#include <utility>

using VARIABLE = std::pair<const char*, const char*>;

#if defined(_WIN32)
inline constexpr const char* NOWHERE = "C:\\tests-have-no-such-directory";
inline constexpr std::array ISOLATING_VARIABLES{VARIABLE{"PROGRAMDATA", NOWHERE}, VARIABLE{"APPDATA", NOWHERE},
                                                VARIABLE{"LOCALAPPDATA", NOWHERE}};
#else
// Not even root makes a directory there, as some of the programs do that tests start.
inline constexpr const char* NOWHERE = "/proc/tests-have-no-such-directory";
inline constexpr std::array ISOLATING_VARIABLES{VARIABLE{"TESSARY_SYSTEM_ROOT", NOWHERE},
                                                VARIABLE{"XDG_CONFIG_HOME", NOWHERE},
                                                VARIABLE{"XDG_STATE_HOME", NOWHERE}};
#endif

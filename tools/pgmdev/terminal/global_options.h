#pragma once

/// \file
/// The options that go with every verb.

#include "terminal/command_line.h"

std::vector<GLOBAL_OPTION> global_options();

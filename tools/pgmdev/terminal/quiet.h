#pragma once

/// \file
/// Whether the user wants to read more than answers and failures: hints and warnings on standard error.

/// From now on there are none, or there are.
void be_quiet(bool quiet = true);

bool is_quiet();

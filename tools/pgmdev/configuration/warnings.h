#pragma once

/// \file
/// Settings that have no effect.

/// Says on standard error, once each, which settings of --set, the environment and the configuration file are not known,
/// are no settings, or have values that are neither on nor off. A configuration file that is there and cannot be read
/// throws COMMAND_FAILURE.
void warn_of_configuration();

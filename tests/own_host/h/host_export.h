#pragma once

/// \file
/// This host's own: what it exports, and that it is this host.

#define HOST_IS_OWN 1
#define HOST_EXPORT __attribute__((visibility("default")))
#define HOST_PRINTF_LIKE(text, first)

#pragma once

/// \file
/// This host's own: what it exports, and that it is this host.

#define HOST_IS_OWN 1

#if defined(_WIN32)
#if defined(PGMHOST_BUILD)
#define HOST_EXPORT __declspec(dllexport)
#else
#define HOST_EXPORT __declspec(dllimport)
#endif
#else
#define HOST_EXPORT __attribute__((visibility("default")))
#endif

#define HOST_PRINTF_LIKE(text, first)

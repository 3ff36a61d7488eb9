#pragma once

/// \file
/// PGMDEV_EXPORT marks the classes that the device-data library exports; everything else stays inside it.

#if defined(_WIN32)
#if defined(PGMDEV_BUILD)
#define PGMDEV_EXPORT __declspec(dllexport)
#else
#define PGMDEV_EXPORT __declspec(dllimport)
#endif
#else
#define PGMDEV_EXPORT __attribute__((visibility("default")))
#endif

#pragma once

/// \file
/// HOST_EXPORT marks what the host's service library exports; everything else stays inside it.

#if defined(_WIN32)
#if defined(PGMHOST_BUILD)
#define HOST_EXPORT __declspec(dllexport)
#else
#define HOST_EXPORT __declspec(dllimport)
#endif
#else
#define HOST_EXPORT __attribute__((visibility("default")))
#endif

/// Lets the compiler check printf-style arguments: `text` and `first` are the positions of the format and of its first
/// argument, counted from 1.
#if defined(__GNUC__)
#define HOST_PRINTF_LIKE(text, first) __attribute__((format(printf, text, first)))
#else
#define HOST_PRINTF_LIKE(text, first)
#endif

#pragma once

/// \file
/// PGMDEV_EXPORT marks the classes that the device-data library exports; everything else stays inside it.
///
/// Texts, containers and exceptions pass between a program and the library, and a program deletes what the library made
/// with new. So both use one and the same C++ runtime: they are built by the same compiler, with its runtime library as a
/// shared one (on Windows libstdc++-6.dll beside pgmdev.dll; a program linked with -static has another).

#if defined(_WIN32)
#if defined(PGMDEV_BUILD)
#define PGMDEV_EXPORT __declspec(dllexport)
#else
#define PGMDEV_EXPORT __declspec(dllimport)
#endif
#else
#define PGMDEV_EXPORT __attribute__((visibility("default")))
#endif

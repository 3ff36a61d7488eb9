#pragma once

/// \file
/// The spellings of a device's name, and how to get from one to another.
///
/// A device has
/// - a full ordering name: device, package, speed grade and suffixes (`DEVICE_A1F100C6`),
/// - a package name: without the speed grade (`DEVICE_A1F100`),
/// - a programming name: without the package (`DEVICE_A1`),
/// - a part name and a family name in programmer files, the pcf names (`PCF_A1`, `FAMILY_A_PCF`),
/// - a name in the host's device library, and a family name (`FAMILY_A`).
///
/// Conventions of this class:
/// - Every operation trims the name that it is given and converts it to upper case, in the caller's own string,
///   although it is declared constant. Do not pass an object that is defined const, nor one string from two threads, unless it
///   is normal already: then it is not written to.
/// - A name that is not found gives "" and no message.
/// - All data is compiled into the library. The first call of any operation opens it; if that data is damaged, every
///   call reports an internal error (msg.h) with the source file "pgm/pgmdev/pgmdev_ddb_mgr". The operations may be
///   called from any thread.
/// - With the configuration switch "PGMDEV_ENABLE_GRAMMAR_DEBUG" on, get_package_name and get_pgm_name trace their
///   conversions on standard output, also when another operation calls them.

#include <string>

#include "pgmdev_export.h"

class PGMDEV_EXPORT PGMDEV_DEVICE_GRAMMAR_MGR {
public:
    PGMDEV_DEVICE_GRAMMAR_MGR() = delete;

    /// The programmer-file part or family name of a programming name.
    static std::string get_pgm_part_pcf(const std::string& name);
    static std::string get_pgm_family_pcf(const std::string& name);

    /// The programmer-file part or family name of a device name of the device library.
    static std::string get_dev_part_pcf(const std::string& name);
    static std::string get_dev_family_pcf(const std::string& name);

    /// The programmer-file family name of a family-level device name.
    static std::string get_pcf_family_pcf(const std::string& name);

    /// The package name of a full ordering name; of any other name, that name itself, or "" with `no_fallback`.
    static std::string get_package_name(const std::string& name, bool no_fallback);

    /// The programming name of a package name or, unless `skip_package_conversion`, of a full ordering name; of any
    /// other name, that name itself, or "" with `no_fallback`.
    static std::string get_pgm_name(const std::string& name, bool skip_package_conversion, bool no_fallback);

    /// The family name of a programmer-file part name, a programming name or a device name of the device library.
    static std::string get_family(const std::string& name);

    /// The first device name of the device library that has that programmer-file part name.
    static std::string get_pcf_device(const std::string& pcf_name);

    /// Both programmer-file names of a device name of the device library.
    static void get_dev_pcfs(const std::string& name, std::string& part_pcf, std::string& family_pcf);

    /// Both programmer-file names of a full ordering name, package name or programming name.
    static void get_pgm_pcfs(const std::string& name, std::string& part_pcf, std::string& family_pcf);

    /// Whether a full ordering name is the package name and the programming name, too.
    static bool use_full_name(const std::string& name);

    /// Whether the package name (of a full ordering name, or the name itself) is the programming name, too.
    static bool use_package_name(const std::string& name);
};

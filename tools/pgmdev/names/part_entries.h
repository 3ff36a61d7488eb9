#pragma once

/// \file
/// The parts of the device library, with what it and the grammar tell of each.

#include <string>
#include <vector>

#include "dev.h"
#include "terminal/json.h"

/// Which parts are wanted, as the device library filters them (dev.h).
struct PART_FILTER {
    static constexpr const char* ANY = "ANY";

    std::string family = ANY;
    std::string device = ANY;
    std::string package = ANY;
    std::string pins = ANY;
    std::string speed = ANY;
    std::string temperature = ANY;
    bool orderable = false;   ///< only those with an ordering code
    bool production = false;  ///< only those in production
    bool hidden = false;      ///< hidden ones, too
};

/// The numbers of those parts, ascending.
std::vector<int> part_numbers(const PART_FILTER& filter);

/// A part. Names are in upper case; "" stands for a name that it has not.
struct PART_ENTRY {
    int number = 0;
    std::string name;
    DEV_DEVICE_ENUM device_number = DEV_DEVICE_INVALID;
    DEV_FAMILY_ENUM family_number = DEV_FAMILY_INVALID;
    std::string device;
    std::string family;
    std::string dev_part_pcf;    ///< of the device
    std::string dev_family_pcf;  ///< likewise
    std::string package_name;
    std::string pgm_name;
    std::string pgm_part_pcf;
    std::string pgm_family_pcf;
    std::string package;      ///< type; "": none of part_values.h, as for what follows
    std::string pins;         ///< their number
    std::string speed;        ///< grade
    std::string temperature;  ///< range
    bool orderable = false;
    bool production = false;
    bool hidden = false;
};

std::vector<PART_ENTRY> part_entries(const PART_FILTER& filter);

/// A device.
struct DEVICE_ENTRY {
    DEV_FAMILY_ENUM family_number = DEV_FAMILY_INVALID;
    std::string name;
    std::string family;
    std::string dev_part_pcf;
    std::string dev_family_pcf;
};

DEVICE_ENTRY device_entry(DEV_DEVICE_ENUM device);

/// The devices that pass the filter although they have no parts: of the family and the name, when nothing is asked of
/// parts.
std::vector<DEV_DEVICE_ENUM> devices_without_parts(const PART_FILTER& filter);

/// Characteristics for programs: null for "", and for a number that is none.
JSON text_or_null(const std::string& text);
JSON number_or_null(const std::string& text);

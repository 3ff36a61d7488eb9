#pragma once

/// \file
/// The catalog as read: what its files say, with the rules of `parts` lines expanded to single parts.

#include <filesystem>
#include <string>
#include <vector>

#include "faults.h"

/// The programmer family of devices that programmer files name without a family.
inline constexpr const char* NO_PROGRAMMER_FAMILY = "NONE";

struct CATALOG_FAMILY {
    SOURCE_PLACE place;
    int number = 0;
    std::string name;               ///< as displayed
    std::string programmer_family;  ///< or NO_PROGRAMMER_FAMILY
};

/// A package, such as F484: a ball grid array with 484 pins.
struct CATALOG_PACKAGE {
    std::string code;  ///< as in ordering names
    std::string type;
    std::string pins;
};

/// A speed grade with its temperature range, such as C6.
struct CATALOG_GRADE {
    std::string code;  ///< as in ordering names
    std::string speed;
    std::string temperature;
};

struct CATALOG_DEVICE {
    SOURCE_PLACE place;
    int number = 0;
    std::string name;             ///< as the device library spells it
    std::size_t family = 0;       ///< index of the family
    std::string programmer_part;  ///< "": programmer files do not know the device
};

/// What an ordering name stands for.
struct CATALOG_PART {
    SOURCE_PLACE place;
    int number = 0;  ///< 0: the device library does not know the name
    std::string name;
    std::string package_name;
    std::string programming_name;
    std::size_t device = 0;   ///< index of the device
    std::size_t package = 0;  ///< index of the package
    std::size_t grade = 0;    ///< index of the grade
    std::string status;       ///< as written, without "hidden"
    bool production = false;
    bool hidden = false;
    int ordering_index = -1;  ///< -1: no ordering code
    SOURCE_PLACE ordering_place;
};

/// A further name by which the device library finds a part.
struct CATALOG_ALIAS {
    SOURCE_PLACE place;
    std::string name;
    std::size_t part = 0;  ///< index of the part
};

struct CATALOG {
    std::vector<CATALOG_FAMILY> families;  ///< ascending by number
    std::vector<CATALOG_PACKAGE> packages;
    std::vector<CATALOG_GRADE> grades;
    std::vector<CATALOG_DEVICE> devices;  ///< ascending by number
    std::vector<CATALOG_PART> parts;      ///< in the order of the file
    std::vector<CATALOG_ALIAS> aliases;
    int ordering_entries = 0;      ///< length of the ordering-code list
    int last_part = 0;             ///< the highest part number
    int last_ordering_index = -1;  ///< the highest index with an ordering code
};

/// Reads and checks all files of a directory. The catalog is usable only when no fault was added.
CATALOG read_catalog(const std::filesystem::path& directory, FAULTS& faults);

#pragma once

/// \file
/// The parts of the device library, with what it and the grammar tell of each.

#include <array>
#include <map>
#include <string>
#include <vector>

#include "dev.h"
#include "pgmdev_types.h"
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

/// Package, pins, speed and temperature.
inline constexpr std::size_t PART_CHARACTERISTIC_COUNT = 4;

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

/// Makes entries of single parts. What takes a pass over all parts is done once.
class PART_ENTRIES {
public:
    PART_ENTRIES();

    /// Whether the device library lists the part, be it as a hidden one.
    bool lists(int part) const { return is_marked(m_listed, part); }

    /// The entry of a part that it lists, without what add_characteristics adds.
    PART_ENTRY make(int part);

    /// Package, pins, speed and temperature. Few questions ask the device library for those of a device, many of them for
    /// those of all parts.
    void add_characteristics(std::vector<PART_ENTRY>& entries);

private:
    using MARKS = std::vector<bool>;  ///< by part number

    static MARKS marks(const PART_FILTER& filter);
    static bool is_marked(const MARKS& marks, int part) {
        return part >= 0 && static_cast<std::size_t>(part) < marks.size() && marks[static_cast<std::size_t>(part)];
    }

    MARKS m_listed;
    MARKS m_shown;
    MARKS m_orderable;
    MARKS m_production;
    DEV_PART_MANAGER m_manager;
    std::map<DEV_DEVICE_ENUM, DEVICE_ENTRY> m_devices;
    unsigned m_questions = 0;                                                    ///< for characteristics
    std::vector<std::array<BYTE, PART_CHARACTERISTIC_COUNT>> m_characteristics;  ///< of all parts, as places of values
};

/// The devices that pass the filter although they have no parts: of the family and the name, when nothing is asked of
/// parts.
std::vector<DEV_DEVICE_ENUM> devices_without_parts(const PART_FILTER& filter);

/// Characteristics for programs: null for "", and for a number that is none.
JSON text_or_null(const std::string& text);
JSON number_or_null(const std::string& text);

#pragma once

/// \file
/// The parts of the device library, with what it and the grammar tell of each.

#include <array>
#include <map>
#include <optional>
#include <string>
#include <utility>
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

/// The numbers of those parts, ascending.
std::vector<int> part_numbers(const PART_FILTER& filter);

/// What a part is called by itself and by conversions, in upper case; "" stands for a name that it has not.
struct PART_NAMES {
    std::string name;
    std::string package_name;
    std::string pgm_name;
    std::string pgm_part_pcf;
    std::string pgm_family_pcf;
};

struct PART_STATUS {
    bool orderable = false;
    bool production = false;
    bool hidden = false;
};

/// Each is one of part_values.h, or "".
struct PART_CHARACTERISTICS {
    std::string package;      ///< type
    std::string pins;         ///< their number
    std::string speed;        ///< grade
    std::string temperature;  ///< range
};
inline constexpr std::size_t PART_CHARACTERISTIC_COUNT = 4;

/// For each of them the place among the values, from 1; 0: none of these.
using CHARACTERISTIC_PLACES = std::array<BYTE, PART_CHARACTERISTIC_COUNT>;

/// A device. Names are as those of a part.
struct DEVICE_ENTRY {
    DEV_FAMILY_ENUM family_number = DEV_FAMILY_INVALID;
    std::string device;
    std::string family;
    std::string dev_part_pcf;
    std::string dev_family_pcf;
};

DEVICE_ENTRY device_entry(DEV_DEVICE_ENUM device);

/// A part in a list.
struct PART_ENTRY : PART_NAMES, DEVICE_ENTRY, PART_STATUS, PART_CHARACTERISTICS {
    int number = 0;
    DEV_DEVICE_ENUM device_number = DEV_DEVICE_INVALID;
};

/// Of parts by number.
std::vector<PART_ENTRY> part_entries(const std::vector<int>& numbers);

/// What the device library and the grammar tell of single parts. It is asked for the parts of a device at once, when the
/// first of them is asked for.
class PART_ENTRIES {
public:
    PART_ENTRIES() = default;
    PART_ENTRIES(const PART_ENTRIES&) = delete;
    PART_ENTRIES& operator=(const PART_ENTRIES&) = delete;

    const DEVICE_ENTRY& device(DEV_DEVICE_ENUM device);

    /// The parts of a device, hidden ones, too, by number.
    const std::vector<int>& parts_of(DEV_DEVICE_ENUM device) { return known(device).parts; }

    /// Whether the device library lists the part, be it as a hidden one.
    bool lists(int part);

    PART_STATUS status_of(int part);

    /// What all of the parts have alike; "" for what they differ in. There is one part at least, and they are in the order
    /// of their numbers. Few questions ask the device library for what the first one has, many of them for what all have.
    PART_CHARACTERISTICS common_characteristics(const std::vector<int>& parts);

private:
    struct STATUS_LISTS {
        std::vector<int> orderable;
        std::vector<int> production;
        std::vector<int> shown;
    };
    struct KNOWN_DEVICE {
        std::vector<int> parts;
        std::optional<DEVICE_ENTRY> entry;
        std::optional<STATUS_LISTS> parts_by_status;
    };

    KNOWN_DEVICE& known(DEV_DEVICE_ENUM device);

    using DEVICES = std::map<DEV_DEVICE_ENUM, KNOWN_DEVICE>;

    DEV_PART_MANAGER m_manager;
    DEVICES m_devices;
    DEVICES::value_type* m_last = nullptr;  ///< one of them: mostly the next part is of it, too
    unsigned m_questions = 0;               ///< for characteristics

    /// Of all parts, by number; empty until many have been asked for.
    std::vector<CHARACTERISTIC_PLACES> m_characteristics;
};

/// What a part is called, given its number.
PART_NAMES part_names_of(int part);

/// The devices that pass the filter although they have no parts: of the family and the name, when nothing is asked of
/// parts.
std::vector<DEV_DEVICE_ENUM> devices_without_parts(const PART_FILTER& filter);

/// Characteristics for programs: null for "", and for a number that is none.
JSON text_or_null(const std::string& text);
JSON number_or_null(const std::string& text);

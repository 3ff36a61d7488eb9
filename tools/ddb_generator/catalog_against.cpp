#include "catalog_against.h"

#include <map>

#include "source_rows.h"

namespace {

/// A number that is given to a name.
struct NUMBERED {
    SOURCE_PLACE place;
    std::string name;
    int number;
    bool is_further = false;  ///< the number has a name of its own besides
};

using NUMBERS = std::vector<NUMBERED>;

constexpr int NO_NUMBER = 0;
constexpr int NO_ORDERING_CODE = -1;

template <class ROWS>
NUMBERS numbers_of(const ROWS& rows) {
    NUMBERS numbers;
    for (const auto& row : rows) {
        numbers.push_back({row.place, row.name, row.number});
    }
    return numbers;
}

NUMBERS part_numbers_of(const CATALOG& catalog) {
    NUMBERS numbers = numbers_of(catalog.parts);
    for (const CATALOG_ALIAS& alias : catalog.aliases) {
        numbers.push_back({alias.place, alias.name, catalog.parts[alias.part].number, true});
    }
    return numbers;
}

NUMBERS ordering_codes_of(const CATALOG& catalog) {
    NUMBERS numbers;
    for (const CATALOG_PART& part : catalog.parts) {
        const bool has_code = part.ordering_index != NO_ORDERING_CODE;
        numbers.push_back({has_code ? part.ordering_place : part.place, part.name, part.ordering_index});
    }
    return numbers;
}

std::string spelled(int number, int none) {
    return number == none ? "none" : std::to_string(number);
}

/// `none` is the number of a name without one, to which any may be given. `what` calls the numbers.
void compare(const NUMBERS& numbers, const NUMBERS& old, const std::string& what, int none, FAULTS& faults) {
    std::map<std::string, const NUMBERED*> by_name;
    std::map<int, const NUMBERED*> by_number;
    for (const NUMBERED& row : old) {
        if (row.number != none) {
            by_name.emplace(upper_case(row.name), &row);
        }
        if (row.number != none && !row.is_further) {
            by_number.emplace(row.number, &row);
        }
    }
    for (const NUMBERED& row : numbers) {
        const std::string name = upper_case(row.name);
        const auto same_name = by_name.find(name);
        if (same_name != by_name.end() && same_name->second->number != row.number) {
            faults.add(row.place, "\"" + row.name + "\" had the " + what + " " +
                                      std::to_string(same_name->second->number) + " at " +
                                      text_of(same_name->second->place) + ", now it has " + spelled(row.number, none));
            continue;
        }
        const auto same_number = by_number.find(row.number);
        if (row.number != none && !row.is_further && same_number != by_number.end() &&
            upper_case(same_number->second->name) != name) {
            faults.add(row.place, "the " + what + " " + std::to_string(row.number) + " of \"" + row.name +
                                      "\" stood for \"" + same_number->second->name + "\" at " +
                                      text_of(same_number->second->place) + ": give a new one");
        }
    }
}

}  // namespace

void compare_numbers(const CATALOG& catalog, const CATALOG& old, FAULTS& faults) {
    compare(numbers_of(catalog.families), numbers_of(old.families), "family number", NO_NUMBER, faults);
    compare(numbers_of(catalog.devices), numbers_of(old.devices), "device number", NO_NUMBER, faults);
    compare(part_numbers_of(catalog), part_numbers_of(old), "part number", NO_NUMBER, faults);
    compare(ordering_codes_of(catalog), ordering_codes_of(old), "ordering-code index", NO_ORDERING_CODE, faults);
}

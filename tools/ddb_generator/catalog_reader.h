#pragma once

/// \file
/// Reads the catalog's files, in the order in which they build on each other.

#include <optional>
#include <string>
#include <vector>

#include "catalog.h"
#include "name_registry.h"
#include "source_rows.h"

class CATALOG_READER {
public:
    explicit CATALOG_READER(FAULTS& faults) : m_faults(faults) {}

    void read_families(const std::filesystem::path& path);
    void read_packages(const std::filesystem::path& path);
    void read_grades(const std::filesystem::path& path);
    void read_devices(const std::filesystem::path& path);
    void read_ordering_codes(const std::filesystem::path& path);

    CATALOG take() { return std::move(m_catalog); }

private:
    /// One way to complete a name: the code, and whether the name shows it.
    struct COMPLETION {
        std::size_t index;  ///< of the package or grade
        std::string text;   ///< "" when the name does not show it
    };

    void read_device(const SOURCE_ROW& row);
    void read_parts(const SOURCE_ROW& row);
    void read_alias(const SOURCE_ROW& row);
    void add_part(CATALOG_PART part);
    bool read_status(const SOURCE_ROW& row, CATALOG_PART& part);
    std::vector<std::string> read_pattern(const SOURCE_ROW& row, std::size_t cell);
    std::vector<COMPLETION> read_completions(const SOURCE_ROW& row, std::size_t cell, const NAME_REGISTRY& codes);
    bool read_ordering_entries(const SOURCE_ROW& row);
    void read_ordering_code(const SOURCE_ROW& row);
    void give_ordering_code(const std::string& name, int index, const SOURCE_PLACE& place);
    bool check(const SOURCE_ROW& row, std::size_t cell, const char* what) {
        return check_name(row.place, row.cells[cell], what, m_faults);
    }
    void require_ascending(const SOURCE_PLACE& place, const char* what, int number, int& previous);

    FAULTS& m_faults;
    CATALOG m_catalog;
    NAME_REGISTRY m_family_names{"family"};
    NAME_REGISTRY m_package_codes{"package"};
    NAME_REGISTRY m_grade_codes{"grade"};
    NAME_REGISTRY m_device_names{"device"};
    NAME_REGISTRY m_ordering_names{"ordering name"};  ///< index of the part; aliases too
    std::vector<SOURCE_PLACE> m_part_places;          ///< by part number; line 0: not yet given
    int m_previous_device = 0;
    int m_previous_ordering_index = -1;
    bool m_in_device = false;  ///< the device that the present lines belong to was read without fault
};

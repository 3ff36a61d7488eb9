#include "pgmdev_part_index.h"

#include "names/catalog_parts.h"
#include "names/part_indexes.h"
#include "stl.h"

PGMDEV_PART_INDEX::PGMDEV_PART_INDEX() {
    parts_by_programmer_file_name(INDEX_WANTED::NOW);
    if (!host_has_catalog_parts()) {
        parts_by_possible_name(INDEX_WANTED::NOW);
    }
}

PGMDEV_PART_INDEX::~PGMDEV_PART_INDEX() = default;

std::string PGMDEV_PART_INDEX::get_part_name_from_pcf(std::string pcf_name) const {
    stl_toupper(pcf_name);
    return parts_by_programmer_file_name(INDEX_WANTED::NOW)->find(pcf_name).value_or("");
}

std::string PGMDEV_PART_INDEX::get_possible_full_name(std::string name) const {
    stl_toupper(name);
    const auto full_name =
        host_has_catalog_parts() ? catalog_part_denoted(name) : parts_by_possible_name(INDEX_WANTED::NOW)->find(name);
    return full_name.value_or("");
}

#include "pgmdev_part_index.h"

#include "names/part_indexes.h"
#include "stl.h"

PGMDEV_PART_INDEX::PGMDEV_PART_INDEX() {
    parts_by_programmer_file_name(INDEX_WANTED::NOW);
    parts_by_possible_name(INDEX_WANTED::NOW);
}

PGMDEV_PART_INDEX::~PGMDEV_PART_INDEX() = default;

std::string PGMDEV_PART_INDEX::get_part_name_from_pcf(std::string pcf_name) const {
    stl_toupper(pcf_name);
    return parts_by_programmer_file_name(INDEX_WANTED::NOW)->find(pcf_name).value_or("");
}

std::string PGMDEV_PART_INDEX::get_possible_full_name(std::string name) const {
    stl_toupper(name);
    return parts_by_possible_name(INDEX_WANTED::NOW)->find(name).value_or("");
}

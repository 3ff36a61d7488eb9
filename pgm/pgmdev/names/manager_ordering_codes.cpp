#include <algorithm>
#include <utility>

#include "names/catalog_parts.h"
#include "names/part_indexes.h"
#include "names/parts.h"
#include "names/stores.h"
#include "pgmdev_mgr.h"
#include "stl.h"

// Ordering codes: indexes and hashes of part names.

std::string PGMDEV_MGR::get_opn(DWORD opn_index) {
    const std::span<const DWORD> list = opn_list(get_opn_store());
    const int part = opn_index < list.size() ? static_cast<int>(list[opn_index]) : -1;
    return part != -1 && is_usable_part(part) ? upper_part_name(part) : std::string();
}

DWORD PGMDEV_MGR::get_opn_enum(std::string name) {
    const int part = dstr_get_dev_part_enum_by_string(name.c_str());
    if (!is_usable_part(part)) {
        return INVALID_DWORD;
    }
    const std::span<const DWORD> list = opn_list(get_opn_store());
    if (const NUMBER_INDEX* index = ordering_codes_by_part(INDEX_WANTED::WHEN_IT_PAYS)) {
        const DWORD* code = index->find(static_cast<DWORD>(part));
        return code != nullptr ? *code : INVALID_DWORD;
    }
    const auto entry = std::find(list.begin(), list.end(), static_cast<DWORD>(part));
    return entry != list.end() ? static_cast<DWORD>(entry - list.begin()) : INVALID_DWORD;
}

QWORD PGMDEV_MGR::get_opn_hash(std::string name) {
    if (!is_usable_part(dstr_get_dev_part_enum_by_string(name.c_str()))) {
        return INVALID_NAME_HASH;
    }
    stl_toupper(name);
    return part_name_hash(name);
}

std::string PGMDEV_MGR::get_opn_from_hash(QWORD hash) {
    hash &= PART_NAME_HASH_MASK;
    if (host_has_catalog_parts()) {
        const int part = catalog_part_by_hash(hash);
        return part != 0 ? upper_part_name(part) : std::string();
    }
    if (const NUMBER_INDEX* index = parts_by_hash(INDEX_WANTED::WHEN_IT_PAYS)) {
        const DWORD* part = index->find(hash);
        return part != nullptr ? upper_part_name(static_cast<int>(*part)) : std::string();
    }
    std::string result;
    for_each_part([&](int part) {
        std::string name = upper_part_name(part);
        if (part_name_hash(name) != hash) {
            return false;
        }
        result = std::move(name);
        return true;
    });
    return result;
}

#include <algorithm>
#include <memory>
#include <utility>

#include "names/parts.h"
#include "names/stores.h"
#include "pgm_common.h"
#include "pgmdev_mgr.h"
#include "stl.h"

// Ordering codes: indexes and hashes of part names.

namespace {

constexpr DWORD DIGEST_SIZE = 32;
constexpr int HASH_SIZE = 6;
constexpr QWORD HASH_MASK = 0xFFFFFFFFFFFF;

QWORD hash_of(const std::string& upper_name) {
    const std::unique_ptr<const BYTE[]> digest(
        PGM_COMMON::get_block_sha(upper_name.data(), upper_name.size(), DIGEST_SIZE));
    QWORD hash = 0;
    for (int i = 0; i < HASH_SIZE; ++i) {
        hash |= QWORD{digest[static_cast<std::size_t>(i)]} << (8 * i);
    }
    return hash;
}

}  // namespace

std::string PGMDEV_MGR::get_opn(DWORD opn_index) {
    const std::vector<DWORD>& list = opn_list(get_opn_store());
    const int part = opn_index < list.size() ? static_cast<int>(list[opn_index]) : -1;
    return part != -1 && is_usable_part(part) ? upper_part_name(part) : std::string();
}

DWORD PGMDEV_MGR::get_opn_enum(std::string name) {
    const int part = dstr_get_dev_part_enum_by_string(name.c_str());
    if (!is_usable_part(part)) {
        return INVALID_DWORD;
    }
    const std::vector<DWORD>& list = opn_list(get_opn_store());
    const auto entry = std::find(list.begin(), list.end(), static_cast<DWORD>(part));
    return entry != list.end() ? static_cast<DWORD>(entry - list.begin()) : INVALID_DWORD;
}

QWORD PGMDEV_MGR::get_opn_hash(std::string name) {
    if (!is_usable_part(dstr_get_dev_part_enum_by_string(name.c_str()))) {
        return INVALID_NAME_HASH;
    }
    stl_toupper(name);
    return hash_of(name);
}

std::string PGMDEV_MGR::get_opn_from_hash(QWORD hash) {
    std::string result;
    for_each_part([&](int part) {
        std::string name = upper_part_name(part);
        if (hash_of(name) != (hash & HASH_MASK)) {
            return false;
        }
        result = std::move(name);
        return true;
    });
    return result;
}

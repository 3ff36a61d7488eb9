#include "names/parts.h"

#include <memory>

#include "pgm_common.h"
#include "stl.h"

namespace {

constexpr DWORD DIGEST_SIZE = 32;
constexpr std::size_t HASH_SIZE = 6;

}  // namespace

std::string upper_part_name(int part) {
    std::string name = dstr_get_user_string(part);
    stl_toupper(name);
    return name;
}

bool share_part_prefix(std::string_view left, std::string_view right) {
    return left.size() >= PART_PREFIX_SIZE && right.size() >= PART_PREFIX_SIZE &&
           left.substr(0, PART_PREFIX_SIZE) == right.substr(0, PART_PREFIX_SIZE);
}

QWORD part_name_hash(const std::string& upper_name) {
    const std::unique_ptr<const BYTE[]> digest(
        PGM_COMMON::get_block_sha(upper_name.data(), upper_name.size(), DIGEST_SIZE));
    QWORD hash = 0;
    for (std::size_t i = 0; i < HASH_SIZE; ++i) {
        hash |= QWORD{digest[i]} << (8 * i);
    }
    return hash;
}

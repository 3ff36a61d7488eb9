#include "names/parts.h"

#include "part_digests_table.h"
#include "pgm_common.h"
#include "stl.h"

std::string upper_part_name(int part) {
    std::string name = dstr_get_user_string(part);
    stl_toupper(name);
    return name;
}

std::unique_ptr<const BYTE[]> sha256_of(const std::string& text) {
    return std::unique_ptr<const BYTE[]>(PGM_COMMON::get_block_sha(text.data(), text.size(), SHA256_SIZE));
}

QWORD part_name_hash(const std::string& upper_name) {
    return name_digest(sha256_of(upper_name).get()).hash;
}

#include "names/parts.h"

#include "stl.h"

std::string upper_part_name(int part) {
    std::string name = dstr_get_user_string(part);
    stl_toupper(name);
    return name;
}

bool share_part_prefix(const std::string& left, const std::string& right) {
    return left.size() >= PART_PREFIX_SIZE && right.size() >= PART_PREFIX_SIZE &&
           left.compare(0, PART_PREFIX_SIZE, right, 0, PART_PREFIX_SIZE) == 0;
}

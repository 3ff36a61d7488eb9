#pragma once

#include <string>

#include "dstr.h"
#include "stl.h"

/// The name of a part, device or family of the device library, in upper case.
template <class NUMBER>
std::string upper_name(NUMBER number) {
    std::string name = dstr_get_user_string(number);
    stl_toupper(name);
    return name;
}

#include "stl.h"

#include <algorithm>

#include "ascii.h"

void stl_toupper(std::string& text) {
    std::transform(text.begin(), text.end(), text.begin(), ascii_upper);
}

void stl_tolower(std::string& text) {
    std::transform(text.begin(), text.end(), text.begin(), ascii_lower);
}

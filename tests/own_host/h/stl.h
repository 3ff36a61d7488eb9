#pragma once

#include <string>

void stl_toupper(std::string& text);
void stl_tolower(std::string& text);

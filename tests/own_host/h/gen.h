#pragma once

#include <string>

#include "host_types.h"

std::string gen_get_tessary_path();
std::string gen_get_device_db_fullpath();
std::string gen_get_module_path();

/// The letters of Latin-1 have a case.
int gen_stricmp(const std::string& left, const std::string& right);
std::string gen_remove_leading_and_trailing_white_spaces(std::string text);
QWORD gen_local_strtoQWORD(const std::string& text, int base);
std::string gen_ascii_toupper(std::string text);
std::string gen_itoa(int value);

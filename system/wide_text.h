#pragma once

/// \file
/// Between UTF-8 and the wide characters of Windows. What cannot be converted becomes the replacement character.

#include <string>
#include <string_view>

std::wstring wide_from_utf8(std::string_view text);
std::string utf8_from_wide(std::wstring_view text);

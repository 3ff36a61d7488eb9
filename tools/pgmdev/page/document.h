#pragma once

/// \file
/// The page as one document of HTML: style, scripts and data within it, so that nothing can be missing or of another time.

#include <string>
#include <string_view>

#include "terminal/json.h"

/// What every such document begins with.
inline constexpr std::string_view PAGE_BEGINNING = "<!doctype html>\n<!-- A page of pgmdev: ";

struct PAGE_DATA {
    JSON flash;
    JSON tables;
    JSON names;
};

/// Nothing in the data can become markup or a script: browsers are told by digest which style and scripts to take.
std::string page_document(const PAGE_DATA& data);

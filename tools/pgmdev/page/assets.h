#pragma once

/// \file
/// The parts of the page that are the same whatever data it shows: the files in site/, which the build puts in here.

#include <span>
#include <string_view>

std::string_view page_template();                  ///< site/page.html
std::string_view page_style();                     ///< site/page.css
std::span<const std::string_view> page_scripts();  ///< site/*.js, in the order in which they build on each other

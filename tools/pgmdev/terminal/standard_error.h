#pragma once

/// \file
/// What goes to standard error. That it is closed or full changes nothing: there is no place left to say so.

#include <fmt/core.h>

#include <cstdio>
#include <string>
#include <utility>

template <class... VALUES>
void print_error(fmt::format_string<VALUES...> format, VALUES&&... values) {
    const std::string text = fmt::format(format, std::forward<VALUES>(values)...);
    std::fwrite(text.data(), 1, text.size(), stderr);
}

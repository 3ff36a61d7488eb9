#pragma once

/// \file
/// What goes to standard error, a line each, with nothing that commands a terminal. That it is closed or full changes
/// nothing: there is no place left to say so.

#include <fmt/core.h>

#include <cstdio>
#include <string>
#include <utility>

#include "terminal/printable.h"

template <class... VALUES>
void print_error(fmt::format_string<VALUES...> format, VALUES&&... values) {
    const std::string text = printable(fmt::format(format, std::forward<VALUES>(values)...)) + '\n';
    std::fwrite(text.data(), 1, text.size(), stderr);
}

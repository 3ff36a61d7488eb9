#pragma once

#include <initializer_list>
#include <ostream>
#include <string>
#include <string_view>

/// Prints these texts as one, at once: whoever reads may be waiting for them. A width that the program has set there is for
/// its own next output.
inline void print(std::ostream& out, std::initializer_list<std::string_view> texts) {
    std::string all;
    for (const std::string_view text : texts) {
        all += text;
    }
    out.write(all.data(), static_cast<std::streamsize>(all.size())).flush();
}

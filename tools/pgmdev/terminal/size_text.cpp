#include "terminal/size_text.h"

#include <fmt/core.h>

std::string size_text(QWORD bits) {
    constexpr DWORD MBIT = 1024 * 1024;
    constexpr DWORD KBIT = 1024;
    if (bits != 0 && bits % MBIT == 0) {
        return fmt::format("{} Mbit", bits / MBIT);
    }
    return bits != 0 && bits % KBIT == 0 ? fmt::format("{} Kbit", bits / KBIT) : fmt::format("{} bit", bits);
}

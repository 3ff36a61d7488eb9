#include <charconv>

#include "gen.h"

QWORD gen_local_strtoQWORD(const std::string& text, int base, bool* valid) {
    QWORD value = 0;
    const char* const end = text.data() + text.size();
    const auto [last, error] = std::from_chars(text.data(), end, value, base);
    const bool good = text.empty() || (error == std::errc() && last == end);
    if (valid != nullptr) {
        *valid = good;
    }
    return good ? value : 0;
}

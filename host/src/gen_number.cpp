#include <charconv>

#include "gen.h"

QWORD gen_local_strtoQWORD(const std::string& text, int base) {
    QWORD value = 0;
    const char* const end = text.data() + text.size();
    const auto [last, error] = std::from_chars(text.data(), end, value, base);
    if (error == std::errc::result_out_of_range) {
        return ~QWORD{0};
    }
    return last == end ? value : 0;
}

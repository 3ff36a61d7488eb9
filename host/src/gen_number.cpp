#include <charconv>

#include "gen.h"

QWORD gen_local_strtoQWORD(const std::string& text, int base) {
    QWORD value = 0;
    const char* const end = text.data() + text.size();
    const auto [last, error] = std::from_chars(text.data(), end, value, base);
    if (last != end) {
        return 0;  // however many digits stand before what is none
    }
    return error == std::errc::result_out_of_range ? ~QWORD{0} : value;
}

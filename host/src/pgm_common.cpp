#include "pgm_common.h"

#include <charconv>

#include "gen.h"
#include "msg.h"

namespace {

/// Reads the whole of `text` as a 32-bit number; false when it is anything else.
bool parse_dword(const std::string& text, bool allow_hex, DWORD& value) {
    const bool hex = allow_hex && text.size() > 2 && text[0] == '0' && (text[1] == 'x' || text[1] == 'X');
    const char* first = text.data() + (hex ? 2 : 0);
    const char* last = text.data() + text.size();
    const auto [end, error] = std::from_chars(first, last, value, hex ? 16 : 10);
    return error == std::errc() && end == last;
}

}  // namespace

DWORD PGM_COMMON::convert_string_to_dword(const std::string& text, bool no_empty, bool* ok, DWORD* value,
                                          bool allow_hex) {
    DWORD number = 0;
    const bool valid = text.empty() ? !no_empty : parse_dword(text, allow_hex, number);
    const DWORD result = valid ? number : 0;
    if (value != nullptr) {
        *value = result;
    }
    if (ok != nullptr) {
        *ok = valid;
    } else if (!valid) {
        MSG_INTERNAL_ERROR::report("Invalid string to integer conversion", "PGM_COMMON", "host/src/pgm_common",
                                   __LINE__);
    }
    return result;
}

bool PGM_COMMON::compare_string(const std::string& left, const std::string& right, bool ignore_case) {
    return ignore_case ? gen_stricmp(left, right) == 0 : left == right;
}

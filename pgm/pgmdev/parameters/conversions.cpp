#include <algorithm>
#include <bit>
#include <utility>

#include "gen.h"
#include "parameters/numbers.h"
#include "report.h"
#include "stl.h"

// Between texts and numbers, for editors of the parameter container.

namespace {

constexpr std::string_view HEX_PREFIX = "0x";
constexpr std::string_view LARGEST = "-1";
constexpr DWORD DWORD_DIGITS = 8;
constexpr DWORD QWORD_DIGITS = 16;

bool is_digit(char c, int base) {
    return (c >= '0' && c <= '9') || (base == 16 && c >= 'A' && c <= 'F');
}

/// A number of digits, which may be too large for 64 bits: then it is the largest that is not.
struct SPELLED_NUMBER {
    bool valid = false;
    bool too_large = false;
    QWORD value = 0;
};

/// Whether digits, without zeros in front, spell more than 64 bits hold.
bool exceeds_qword(std::string_view digits, int base) {
    if (base == 16) {
        return digits.size() > QWORD_DIGITS;
    }
    constexpr std::string_view LARGEST_DECIMAL = "18446744073709551615";
    return digits.size() > LARGEST_DECIMAL.size() ||
           (digits.size() == LARGEST_DECIMAL.size() && digits > LARGEST_DECIMAL);
}

SPELLED_NUMBER spelled_number(std::string text) {
    int base = 10;
    if (text.starts_with(HEX_PREFIX)) {
        base = 16;
        text.erase(0, HEX_PREFIX.size());
        stl_toupper(text);
    }
    if (!std::all_of(text.begin(), text.end(), [base](char c) { return is_digit(c, base); })) {
        return {};
    }
    text.erase(0, text.find_first_not_of('0'));
    if (exceeds_qword(text, base)) {
        return {true, true, ~QWORD{0}};
    }
    return {true, false, text.empty() ? 0 : gen_local_strtoQWORD(text, base)};
}

/// Limits of a value: a count, then as many pairs. Their numbers are cut to the bits of the type.
class PAIR_LIST {
public:
    PAIR_LIST(const DWORD* list, QWORD maximum) : m_list(list), m_maximum(maximum) {}

    /// Whether one of the pairs satisfies `test(first, second)`.
    template <class TEST>
    bool any(TEST test) const {
        for (QWORD i = 0; i < m_list[0]; ++i) {
            if (test(m_list[1 + 2 * i] & m_maximum, m_list[2 + 2 * i] & m_maximum)) {
                return true;
            }
        }
        return false;
    }

private:
    const DWORD* m_list;
    QWORD m_maximum;
};

std::string hex_text(QWORD value, DWORD count, bool prefix) {
    std::string text(prefix ? HEX_PREFIX : "");
    while (count-- > 0) {
        text += "0123456789ABCDEF"[value >> 4 * count & 0xF];
    }
    return text;
}

}  // namespace

QWORD PGMDEV_FLASH_INI::convert_string_to_qword(std::string text, bool no_empty, bool* valid) {
    PGMDEV_REQUIRE(!no_empty || !text.empty(), "!no_empty || !string.empty()", FLASH_INI_FILE);
    const SPELLED_NUMBER number = spelled_number(std::move(text));
    if (valid != nullptr) {
        *valid = number.valid;
    } else {
        PGMDEV_REQUIRE(number.valid, "Invalid string to integer conversion", FLASH_INI_FILE);
    }
    return number.value;
}

bool PGMDEV_FLASH_INI::convert_string_to_qword(PGMDEV_PARAM_TYPE type, QWORD& value, bool hex, std::string text,
                                               bool power_of_two, const DWORD* ranges, const DWORD* invalid_hits,
                                               bool exponent, DWORD multiple, std::string& error) {
    value = 0;
    error.clear();
    if (type == PGMDEV_PARAM_STRING || type == PGMDEV_PARAM_BOOL) {
        return true;
    }
    const DWORD size = number_size(type);
    PGMDEV_REQUIRE(size != 0, UNSUPPORTED_PARAM_TYPE, FLASH_INI_FILE);
    const QWORD maximum = ~QWORD{0} >> (64 - 8 * size);
    const auto fail = [&error](const char* message) {
        error = message;
        return false;
    };

    if (text == LARGEST) {
        value = maximum;
    } else {
        if (hex && !text.starts_with(HEX_PREFIX)) {
            text.insert(0, HEX_PREFIX);
        }
        const SPELLED_NUMBER number = spelled_number(std::move(text));
        value = number.value;
        if (!number.valid) {
            return fail("Invalid QWORD conversion");
        }
        if (number.too_large || value > maximum) {
            return fail("Conversion overflow compare to type");
        }
    }
    if (power_of_two && !std::has_single_bit(value)) {
        return fail("Input must be power of 2");
    }
    const auto low_half = static_cast<DWORD>(value);
    if (ranges != nullptr && !PAIR_LIST(ranges, maximum).any([low_half](QWORD low, QWORD high) {
            return low <= low_half && low_half <= high;
        })) {
        return fail("Input is out of range");
    }
    if (invalid_hits != nullptr && PAIR_LIST(invalid_hits, maximum).any([value](QWORD mask, QWORD pattern) {
            return (value & mask) == pattern;
        })) {
        return fail("Input is invalid (hit)");
    }
    if (exponent && value != maximum) {
        value = QWORD{1} << value % 64;  // is the result even where the type is too narrow for it
        return true;
    }
    PGMDEV_REQUIRE(multiple != 0, "multiple != 0", FLASH_INI_FILE);
    value *= multiple;
    if (value > maximum) {
        return fail("Calculation overflow compare to type");
    }
    return true;
}

std::string PGMDEV_FLASH_INI::convert_qword_to_string(QWORD value) {
    return std::to_string(value);
}

std::string PGMDEV_FLASH_INI::convert_dword_to_hex_string(DWORD value, DWORD count, bool prefix) {
    PGMDEV_REQUIRE(count != 0 && count <= DWORD_DIGITS, "count != 0 && count <= 8", FLASH_INI_FILE);
    return hex_text(value, count, prefix);
}

std::string PGMDEV_FLASH_INI::convert_qword_to_hex_string(QWORD value, DWORD count, bool prefix) {
    PGMDEV_REQUIRE(count != 0 && count <= QWORD_DIGITS, "count != 0 && count <= 16", FLASH_INI_FILE);
    return hex_text(value, count, prefix);
}

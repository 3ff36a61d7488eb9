#include <algorithm>

#include "parameters/numbers.h"
#include "report.h"

// Typed values in a block of the parameter container, and as text.

namespace {

/// Decodes one value. `position` is below `data_size`, and is left on the last byte that was consumed.
bool decode(const BYTE* data, QWORD& position, QWORD data_size, PGMDEV_PARAM_TYPE type, void* value) {
    if (type == PGMDEV_PARAM_STRING) {
        const BYTE* const begin = data + position;
        const BYTE* const end = std::find(begin, data + data_size, BYTE{0});
        position = static_cast<QWORD>(end - data);
        if (position == data_size) {
            return false;
        }
        static_cast<std::string*>(value)->assign(begin, end);
        return true;
    }
    if (type == PGMDEV_PARAM_BOOL) {
        *static_cast<bool*>(value) = data[position] != 0;
        return true;
    }
    // A block may end in the middle of a QWORD: only its low half has to be there, the rest is zeros.
    constexpr DWORD LARGEST_BOUND = 4;
    const DWORD size = number_size(type);
    if (size == 0 || position + std::min(size, LARGEST_BOUND) > data_size) {
        return false;
    }
    QWORD number = 0;
    for (DWORD i = 0; i < size && position + i < data_size; ++i) {
        number |= QWORD{data[position + i]} << 8 * i;
    }
    store_number(type, number, value);
    position += size - 1;
    return true;
}

}  // namespace

bool PGMDEV_FLASH_INI::assign_flash_ini_data(const BYTE* data, DWORD& position, DWORD data_size, DWORD count,
                                             const PGMDEV_PARAM_TYPE* types, void** values) {
    QWORD next = position;
    DWORD done = 0;
    bool good = true;
    while (done < count && good && next < data_size) {
        good = decode(data, next, data_size, types[done], values[done]);
        ++next;
        ++done;
    }
    // A position behind the end of a block of 4 GiB stays behind it.
    position = static_cast<DWORD>(std::min<QWORD>(next, 0xFFFFFFFF));
    return good && done == count;
}

void PGMDEV_FLASH_INI::calculate_flash_ini_data_size(DWORD& size, PGMDEV_PARAM_TYPE type, void* value) {
    QWORD added = 1;
    if (type == PGMDEV_PARAM_STRING) {
        added = QWORD{static_cast<const std::string*>(value)->size()} + 1;
    } else if (type != PGMDEV_PARAM_BOOL) {
        PGMDEV_REQUIRE(number_size(type) != 0, UNSUPPORTED_PARAM_TYPE, FLASH_INI_FILE);
        added = number_size(type);
    }
    // A sum that wraps would have the caller take too small a buffer.
    PGMDEV_REQUIRE(added <= 0xFFFFFFFF - QWORD{size}, "size <= 0xFFFFFFFF", FLASH_INI_FILE);
    size += static_cast<DWORD>(added);
}

void PGMDEV_FLASH_INI::fillup_flash_ini_data(BYTE* buffer, DWORD& position, PGMDEV_PARAM_TYPE type, void* value) {
    if (type == PGMDEV_PARAM_STRING) {
        const std::string& text = *static_cast<const std::string*>(value);
        std::copy(text.begin(), text.end(), buffer + position);
        position += static_cast<DWORD>(text.size()) + 1;
    } else if (type == PGMDEV_PARAM_BOOL) {
        buffer[position++] = *static_cast<const bool*>(value) ? 1 : 0;
    } else {
        const DWORD size = number_size(type);
        PGMDEV_REQUIRE(size != 0, UNSUPPORTED_PARAM_TYPE, FLASH_INI_FILE);
        const QWORD number = load_number(type, value);
        for (DWORD i = 0; i < size; ++i) {
            buffer[position++] = static_cast<BYTE>(number >> 8 * i);
        }
    }
}

std::string PGMDEV_FLASH_INI::print_flash_ini_data(PGMDEV_PARAM_TYPE type, bool hex, void* value) {
    if (type == PGMDEV_PARAM_STRING) {
        return *static_cast<const std::string*>(value);
    }
    if (type == PGMDEV_PARAM_BOOL) {
        return *static_cast<const bool*>(value) ? "True" : "False";
    }
    const DWORD size = number_size(type);
    PGMDEV_REQUIRE(size != 0, UNSUPPORTED_PARAM_TYPE, FLASH_INI_FILE);
    const QWORD number = load_number(type, value);
    return hex ? convert_qword_to_hex_string(number, 2 * size, true) : convert_qword_to_string(number);
}

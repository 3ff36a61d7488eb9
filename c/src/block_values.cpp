#include "block_values.h"

#include <limits>

#include "member_tables.h"

void* BLOCK_VALUE::of(PGMDEV_PARAM_TYPE type) {
    switch (type) {
        case PGMDEV_PARAM_STRING:
            return &text;
        case PGMDEV_PARAM_BOOL:
            return &flag;
        case PGMDEV_PARAM_BYTE:
            return &byte;
        case PGMDEV_PARAM_WORD:
            return &word;
        case PGMDEV_PARAM_DWORD:
            return &dword;
        default:
            return &qword;
    }
}

DATUM BLOCK_VALUE::value(PGMDEV_PARAM_TYPE type) const {
    switch (type) {
        case PGMDEV_PARAM_STRING:
            return text_value(text);
        case PGMDEV_PARAM_BOOL:
            return flag_value(flag);
        case PGMDEV_PARAM_BYTE:
            return number_value(byte);
        case PGMDEV_PARAM_WORD:
            return number_value(word);
        case PGMDEV_PARAM_DWORD:
            return number_value(dword);
        default:
            return number_value(qword);
    }
}

PGMDEV_PARAM_TYPE parameter_type(uint32_t type) {
    require_argument(type >= PGMDEV_PARAM_STRING && type <= PGMDEV_PARAM_QWORD, "there is no type of that number");
    return static_cast<PGMDEV_PARAM_TYPE>(type);
}

BLOCK_VALUE block_value(PGMDEV_PARAM_TYPE type, const pgmdev_value& value) {
    BLOCK_VALUE object;
    const auto number = [&value](uint64_t most) { return number_from(value, PGMDEV_KIND_NUMBER, most); };
    switch (type) {
        case PGMDEV_PARAM_STRING:
            object.text = text_from(value);
            break;
        case PGMDEV_PARAM_BOOL:
            object.flag = number_from(value, PGMDEV_KIND_BOOL, 1) != 0;
            break;
        case PGMDEV_PARAM_BYTE:
            object.byte = static_cast<BYTE>(number(std::numeric_limits<BYTE>::max()));
            break;
        case PGMDEV_PARAM_WORD:
            object.word = static_cast<WORD>(number(std::numeric_limits<WORD>::max()));
            break;
        case PGMDEV_PARAM_DWORD:
            object.dword = static_cast<DWORD>(number(std::numeric_limits<DWORD>::max()));
            break;
        default:
            object.qword = number(std::numeric_limits<QWORD>::max());
    }
    return object;
}

void append(std::string& block, PGMDEV_PARAM_TYPE type, void* value) {
    auto position = static_cast<DWORD>(block.size());
    DWORD size = position;
    PGMDEV_FLASH_INI::calculate_flash_ini_data_size(size, type, value);
    block.resize(size);
    PGMDEV_FLASH_INI::fillup_flash_ini_data(reinterpret_cast<BYTE*>(block.data()), position, type, value);
}

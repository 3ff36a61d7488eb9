#pragma once

/// \file
/// What the codec and the conversions of the parameter container share about its types.

#include "pgmdev_flash_ini.h"

inline constexpr const char* UNSUPPORTED_PARAM_TYPE = "Unsupport param type";

/// Bytes of a number of that type; 0 when the type is no number.
constexpr DWORD number_size(PGMDEV_PARAM_TYPE type) {
    switch (type) {
        case PGMDEV_PARAM_BYTE:
            return sizeof(BYTE);
        case PGMDEV_PARAM_WORD:
            return sizeof(WORD);
        case PGMDEV_PARAM_DWORD:
            return sizeof(DWORD);
        case PGMDEV_PARAM_QWORD:
            return sizeof(QWORD);
        default:
            return 0;
    }
}

/// The number in an object of that type, which must be one of the numbers.
inline QWORD load_number(PGMDEV_PARAM_TYPE type, const void* value) {
    switch (type) {
        case PGMDEV_PARAM_BYTE:
            return *static_cast<const BYTE*>(value);
        case PGMDEV_PARAM_WORD:
            return *static_cast<const WORD*>(value);
        case PGMDEV_PARAM_DWORD:
            return *static_cast<const DWORD*>(value);
        default:
            return *static_cast<const QWORD*>(value);
    }
}

/// Puts a number that fits into an object of that type, which must be one of the numbers.
inline void store_number(PGMDEV_PARAM_TYPE type, QWORD number, void* value) {
    switch (type) {
        case PGMDEV_PARAM_BYTE:
            *static_cast<BYTE*>(value) = static_cast<BYTE>(number);
            break;
        case PGMDEV_PARAM_WORD:
            *static_cast<WORD*>(value) = static_cast<WORD>(number);
            break;
        case PGMDEV_PARAM_DWORD:
            *static_cast<DWORD*>(value) = static_cast<DWORD>(number);
            break;
        default:
            *static_cast<QWORD*>(value) = number;
    }
}

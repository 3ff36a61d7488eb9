#pragma once

/// \file
/// Values in a block of the parameter container: objects of the types that the library takes, and bytes.

#include <string>
#include <vector>

#include "pgmdev_c_records.h"
#include "pgmdev_flash_ini.h"
#include "records.h"

/// An object of any of the types; the library is given a pointer to the one that its type says.
struct BLOCK_VALUE {
    std::string text;
    bool flag = false;
    BYTE byte = 0;
    WORD word = 0;
    DWORD dword = 0;
    QWORD qword = 0;

    void* of(PGMDEV_PARAM_TYPE type);
    DATUM value(PGMDEV_PARAM_TYPE type) const;
};

/// A type that there is.
PGMDEV_PARAM_TYPE parameter_type(uint32_t type);

/// What a program gives, which must fit the type.
BLOCK_VALUE block_value(PGMDEV_PARAM_TYPE type, const pgmdev_value& value);

/// Appends a value to the bytes of a block.
void append(std::string& block, PGMDEV_PARAM_TYPE type, void* value);

#pragma once

/// \file
/// Values in a block of the parameter container, from what programs give and to what they get.

#include "pgmdev_c_records.h"
#include "pgmdev_param_value.h"
#include "records.h"

/// A type that there is.
PGMDEV_PARAM_TYPE parameter_type(uint32_t type);

/// What a program gives, which must fit the type.
PGMDEV_PARAM_VALUE parameter_from(PGMDEV_PARAM_TYPE type, const pgmdev_value& value);

/// What a program gets.
DATUM datum_of(const PGMDEV_PARAM_VALUE& value);

/// The bytes of a block as a program gets them.
std::string text_of(const std::vector<BYTE>& block);

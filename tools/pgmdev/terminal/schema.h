#pragma once

/// \file
/// JSON Schemas (draft 2020-12) of what the command answers, put together from the members that answers have. Members
/// that a schema does not name are allowed, so that answers can grow.

#include <concepts>
#include <string>
#include <type_traits>
#include <vector>

#include "terminal/json.h"

JSON text_schema();
JSON flag_schema();
JSON number_schema();  ///< a whole number

/// The schema of the values of a C++ type.
template <class VALUE>
JSON schema_of() {
    if constexpr (std::is_same_v<VALUE, bool>) {
        return flag_schema();
    } else if constexpr (std::integral<VALUE>) {
        return number_schema();
    } else {
        return text_schema();
    }
}

/// What the schema allows, or null.
JSON or_null(JSON schema);
JSON array_schema(JSON items);

/// One member of the objects that a schema describes.
struct SCHEMA_MEMBER {
    std::string name;
    JSON schema;
};

/// Objects that have all of the members.
JSON object_schema(const std::vector<SCHEMA_MEMBER>& members);

/// The names of the members that `object_schema` was given, in their order.
std::vector<std::string> member_names(const JSON& object_schema);

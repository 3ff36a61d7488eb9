#pragma once

/// \file
/// JSON Schemas (draft 2020-12) of what the command answers, put together from the members that answers have. They
/// name every member: an object of this version has no other.

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

/// The schema of the values of a record's member.
template <class RECORD, class VALUE>
JSON schema_of_field(VALUE RECORD::*) {
    return schema_of<VALUE>();
}

/// What the schema allows, or null.
JSON or_null(JSON schema);
JSON array_schema(JSON items);

/// The schema of what is told of a failure; a document of its own under "error".
JSON failure_schema();

/// A reference to failure_schema(), which every document has among its definitions.
JSON failure_reference();

/// One of the texts.
JSON choice_schema(const std::vector<std::string>& texts);

JSON any_of(std::vector<JSON> schemas);

/// One member of the objects that a schema describes.
struct SCHEMA_MEMBER {
    std::string name;
    JSON schema;
    bool required = true;
};

/// Objects with these members.
JSON object_schema(std::vector<SCHEMA_MEMBER> members);

/// The answer to a question, as answer.h has it: with the members of `content` when something was found; when not, with
/// those of them that `known_anyway` names, which may then be null, and perhaps `only_missing`. Or what a batch says of a
/// line that is no question.
JSON question_schema(const std::vector<SCHEMA_MEMBER>& content, const std::vector<std::string>& known_anyway,
                     const std::vector<SCHEMA_MEMBER>& only_missing = {});

/// Lists of the objects that `row` describes (made by object_schema), of which --fields may choose some members.
JSON list_schema(const JSON& row);

/// The schema of objects (made by object_schema) that may have further members.
JSON with_members(JSON object_schema, const std::vector<SCHEMA_MEMBER>& members);

/// The names of the members that `object_schema` was given, in their order.
std::vector<std::string> member_names(const JSON& object_schema);

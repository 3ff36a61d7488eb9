#include "terminal/schema.h"

#include <utility>

JSON text_schema() {
    return {{"type", "string"}};
}

JSON flag_schema() {
    return {{"type", "boolean"}};
}

JSON number_schema() {
    return {{"type", "integer"}};
}

JSON or_null(JSON schema) {
    JSON choices = JSON::array();
    choices.push_back(std::move(schema));
    choices.push_back({{"type", "null"}});
    return {{"anyOf", choices}};
}

JSON array_schema(JSON items) {
    return {{"type", "array"}, {"items", std::move(items)}};
}

JSON object_schema(const std::vector<SCHEMA_MEMBER>& members) {
    JSON properties = JSON::object();
    JSON required = JSON::array();
    for (const SCHEMA_MEMBER& member : members) {
        properties[member.name] = member.schema;
        required.push_back(member.name);
    }
    return {{"type", "object"}, {"properties", properties}, {"required", required}};
}

std::vector<std::string> member_names(const JSON& object_schema) {
    const auto& schema = std::get<JSON::OBJECT>(object_schema.value());
    for (std::size_t i = 0; i < schema.names.size(); ++i) {
        if (schema.names[i] == "properties") {
            return std::get<JSON::OBJECT>(schema.values[i].value()).names;
        }
    }
    return {};
}

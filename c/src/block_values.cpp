#include "block_values.h"

#include <limits>

#include "member_tables.h"

namespace {

/// The largest number that such a value can be.
uint64_t largest_of(const PGMDEV_PARAM_VALUE& value) {
    return std::visit(
        []<class OBJECT>(const OBJECT&) -> uint64_t {
            if constexpr (std::is_same_v<OBJECT, std::string>) {
                return 0;
            } else {
                return std::numeric_limits<OBJECT>::max();
            }
        },
        value.get());
}

}  // namespace

PGMDEV_PARAM_TYPE parameter_type(uint32_t type) {
    require_argument(type >= PGMDEV_PARAM_STRING && type <= PGMDEV_PARAM_QWORD, "there is no type of that number");
    return static_cast<PGMDEV_PARAM_TYPE>(type);
}

PGMDEV_PARAM_VALUE parameter_from(PGMDEV_PARAM_TYPE type, const pgmdev_value& value) {
    PGMDEV_PARAM_VALUE parameter(type);
    if (type == PGMDEV_PARAM_STRING) {
        parameter.set_text(text_from(value));
    } else {
        const pgmdev_kind kind = type == PGMDEV_PARAM_BOOL ? PGMDEV_KIND_BOOL : PGMDEV_KIND_NUMBER;
        parameter.set_number(number_from(value, kind, largest_of(parameter)));
    }
    return parameter;
}

DATUM datum_of(const PGMDEV_PARAM_VALUE& value) {
    return std::visit([](const auto& object) { return value_of(object); }, value.get());
}

std::string text_of(const std::vector<BYTE>& block) {
    return {block.begin(), block.end()};
}

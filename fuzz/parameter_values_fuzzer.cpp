#include <string>
#include <vector>

#include "input.h"
#include "pgmdev_param_value.h"
#include "reports.h"

// Any bytes as the values of a block: their count, a type each, and what they are decoded from. What was decoded can be
// shown and encoded again.

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    CHOICES choices(data, size);
    const DWORD count = choices.byte() % 8U;
    std::vector<PGMDEV_PARAM_TYPE> types;
    std::vector<PGMDEV_PARAM_VALUE> values;
    types.reserve(count);
    for (DWORD i = 0; i < count; ++i) {
        types.push_back(static_cast<PGMDEV_PARAM_TYPE>(1 + choices.byte() % 6U));
        values.emplace_back(types.back());
    }
    std::vector<void*> places;
    places.reserve(count);
    for (PGMDEV_PARAM_VALUE& value : values) {
        places.push_back(value.object());
    }
    const std::string rest = choices.rest();
    const std::vector<BYTE> block(rest.begin(), rest.end());
    up_to_a_report([&] {
        DWORD position = 0;
        if (!PGMDEV_FLASH_INI::assign_flash_ini_data(block.data(), position, static_cast<DWORD>(block.size()), count,
                                                     types.data(), places.data())) {
            return;
        }
        std::vector<BYTE> encoded;
        for (PGMDEV_PARAM_VALUE& value : values) {
            PGMDEV_FLASH_INI::print_flash_ini_data(value.type(), true, value.object());
            pgmdev_append_param(encoded, value.type(), value.object());
        }
    });
    return 0;
}

#include <string>
#include <vector>

#include "input.h"
#include "pgmdev_flash_ini.h"
#include "reports.h"

// Any bytes as the values of a block: their count, a type each, and what they are decoded from. What was decoded can be
// shown and encoded again.

namespace {

struct VALUE {
    std::string text;
    bool flag = false;
    BYTE byte = 0;
    WORD word = 0;
    DWORD dword = 0;
    QWORD qword = 0;

    void* of(PGMDEV_PARAM_TYPE type) {
        void* const places[] = {nullptr, &text, &flag, &byte, &word, &dword, &qword};
        return type < std::size(places) ? places[type] : nullptr;
    }
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    CHOICES choices(data, size);
    const DWORD count = choices.byte() % 8U;
    std::vector<PGMDEV_PARAM_TYPE> types;
    std::vector<VALUE> values(count);
    std::vector<void*> places;
    for (VALUE& value : values) {
        types.push_back(static_cast<PGMDEV_PARAM_TYPE>(1 + choices.byte() % 6U));
        places.push_back(value.of(types.back()));
    }
    const std::string rest = choices.rest();
    const std::vector<BYTE> block(rest.begin(), rest.end());
    up_to_a_report([&] {
        DWORD position = 0;
        if (!PGMDEV_FLASH_INI::assign_flash_ini_data(block.data(), position, static_cast<DWORD>(block.size()), count,
                                                     types.data(), places.data())) {
            return;
        }
        DWORD room = 0;
        for (DWORD i = 0; i < count; ++i) {
            PGMDEV_FLASH_INI::print_flash_ini_data(types[i], true, places[i]);
            PGMDEV_FLASH_INI::calculate_flash_ini_data_size(room, types[i], places[i]);
        }
        std::vector<BYTE> encoded(room);
        DWORD end = 0;
        for (DWORD i = 0; i < count; ++i) {
            PGMDEV_FLASH_INI::fillup_flash_ini_data(encoded.data(), end, types[i], places[i]);
        }
    });
    return 0;
}

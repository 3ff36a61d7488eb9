#include "input.h"
#include "pgm_common.h"
#include "pgmdev_flash_ini.h"
#include "reports.h"

// Any text as a number, with every restriction that a caller may set.

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    CHOICES choices(data, size);
    const auto type = static_cast<PGMDEV_PARAM_TYPE>(choices.byte() % 8U);
    const std::uint8_t options = choices.byte();
    const bool hex = (options & 1U) != 0;
    const bool power_of_two = (options & 2U) != 0;
    const bool exponent = (options & 4U) != 0;
    const DWORD ranges[] = {1, 0, choices.byte()};
    const DWORD invalid_hits[] = {1, choices.byte(), choices.byte()};
    const DWORD multiple = choices.byte();
    const std::string text = choices.rest();
    up_to_a_report([&] {
        QWORD value = 0;
        std::string error;
        PGMDEV_FLASH_INI::convert_string_to_qword(
            type, value, hex, text, power_of_two, (options & 8U) != 0 ? ranges : nullptr,
            (options & 16U) != 0 ? invalid_hits : nullptr, exponent, multiple, error);
        PGMDEV_FLASH_INI::print_flash_ini_data(PGMDEV_PARAM_QWORD, hex, &value);
    });
    up_to_a_report([&] {
        bool valid = false;
        PGMDEV_FLASH_INI::convert_string_to_qword(text, (options & 32U) != 0, (options & 64U) != 0 ? &valid : nullptr);
    });
    up_to_a_report([&] {
        bool valid = false;
        DWORD value = 0;
        PGM_COMMON::convert_string_to_dword(text, (options & 32U) != 0, &valid, &value, hex);
    });
    return 0;
}

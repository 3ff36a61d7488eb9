#include "user_flash/examination.h"

#include "gen.h"

void examine_user_flash(USER_FLASH_EXAMINATION& examination) {
    examination.pieces = split_user_flash(examination.decoded.text);
    if (!examination.has_pieces()) {
        return;
    }
    const std::string_view body = examination.pieces->body;
    QWORD position = 0;
    while (!examination.has_all_values()) {
        const auto value = next_user_flash_value(body, position);
        if (!value) {
            break;
        }
        examination.values.push_back(gen_ascii_toupper(std::string(*value)));
    }
    if (examination.has_all_values()) {
        const std::span<const std::string, USER_FLASH_VALUES> all(examination.values);
        examination.assigned = assign_user_flash(all, examination.record);
        examination.plausible = examination.is_complete() && is_plausible_user_flash(examination.record);
    }
}

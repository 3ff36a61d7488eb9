#include "user_flash/text.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <type_traits>

namespace {

using RECORD = PGMDEV_SFL_FLASH_INFO;

constexpr DWORD BYTE_MAXIMUM = 255;
constexpr BYTE NONE = RECORD::NONE;
constexpr BYTE RESPONSE_BYTES = 3;
constexpr DWORD MBIT = 0x100000;
constexpr DWORD KBYTE = 0x400;

/// Members of one byte that may be written as negative numbers, so that -1 stands for 255.
constexpr std::array SIGNED_MEMBERS{&RECORD::memory_id,         &RECORD::memory_id_index, &RECORD::memory_type,
                                    &RECORD::memory_type_index, &RECORD::mfc_id,          &RECORD::mfc_id_index,
                                    &RECORD::orvane_id};

bool is_signed(BYTE RECORD::*field) {
    return std::find(SIGNED_MEMBERS.begin(), SIGNED_MEMBERS.end(), field) != SIGNED_MEMBERS.end();
}

/// Reads as atoi does, in 64 bits, of which the lower 32 are kept.
DWORD number_in(const std::string& text) {
    return static_cast<DWORD>(std::strtoll(text.c_str(), nullptr, 10));
}

bool assign(RECORD& record, std::string RECORD::*field, const std::string& text) {
    record.*field = text;
    return true;
}

bool assign(RECORD& record, bool RECORD::*field, const std::string& text) {
    if (text != "1" && text != "0") {
        return false;
    }
    record.*field = text == "1";
    return true;
}

bool assign(RECORD& record, BYTE RECORD::*field, const std::string& text) {
    const DWORD number = number_in(text);
    const bool negative = static_cast<std::int32_t>(number) < 0;
    if (number > BYTE_MAXIMUM && !(negative && is_signed(field))) {
        return false;
    }
    record.*field = static_cast<BYTE>(number);
    return true;
}

bool assign(RECORD& record, DWORD RECORD::*field, const std::string& text) {
    record.*field = number_in(text);
    return true;
}

std::string spelled(const std::string& text) {
    return text;
}

std::string spelled(bool flag) {
    return flag ? "1" : "0";
}

std::string spelled(BYTE number) {
    return std::to_string(number);
}

std::string spelled(DWORD number) {
    return std::to_string(static_cast<std::int32_t>(number));
}

template <DWORD UNIT>
constexpr bool is_multiple(DWORD number) {
    return number != 0 && number % UNIT == 0;
}

constexpr bool is_between(DWORD number, DWORD least, DWORD most) {
    return number >= least && number <= most;
}

constexpr std::array<BYTE, 8> DENSITY_CLASSES{16, 18, 20, 21, 22, 24, 25, 32};

constexpr std::array<USER_FLASH_RULE, 12> RULES{{
    {"memory_id", "anything but 0", [](const RECORD& r) { return r.memory_id != 0; }},
    {"memory_id_index", "0, 1 or 2", [](const RECORD& r) { return r.memory_id_index < RESPONSE_BYTES; }},
    {"memory_type_index", "255 for not compared, or 0, 1 or 2 and not memory_id_index",
     [](const RECORD& r) {
         return r.memory_type_index == NONE ||
                (r.memory_type_index < RESPONSE_BYTES && r.memory_type_index != r.memory_id_index);
     }},
    {"mfc_id_index", "255, or 0, 1 or 2 and neither memory_id_index nor memory_type_index",
     [](const RECORD& r) {
         return r.mfc_id_index == NONE || (r.mfc_id_index < RESPONSE_BYTES && r.mfc_id_index != r.memory_id_index &&
                                           r.mfc_id_index != r.memory_type_index);
     }},
    {"orvane_id", "16, 18, 20, 21, 22, 24, 25 or 32",
     [](const RECORD& r) {
         return std::find(DENSITY_CLASSES.begin(), DENSITY_CLASSES.end(), r.orvane_id) != DENSITY_CLASSES.end();
     }},
    {"die_count", "1 or more", [](const RECORD& r) { return r.die_count > 0; }},
    {"device_bit_size", "a multiple of 1048576, whole megabits",
     [](const RECORD& r) { return is_multiple<MBIT>(r.device_bit_size); }},
    {"device_sector_byte", "a multiple of 1024, whole kilobytes",
     [](const RECORD& r) { return is_multiple<KBYTE>(r.device_sector_byte); }},
    {"bulk_erase_time", "1 to 900", [](const RECORD& r) { return is_between(r.bulk_erase_time, 1, 900); }},
    {"sec_erase_time", "1 to 60", [](const RECORD& r) { return is_between(r.sec_erase_time, 1, 60); }},
    {"program_utime", "1000 to 1000000", [](const RECORD& r) { return is_between(r.program_utime, 1000, 1000000); }},
    {"protection_division", "0 to 31, or 255 for not known",
     [](const RECORD& r) { return r.protection_division < 32 || r.protection_division == NONE; }},
}};

}  // namespace

std::optional<USER_FLASH_PIECES> split_user_flash(std::string_view text) {
    const std::size_t body_end = text.find(USER_FLASH_BODY_END);
    const std::size_t text_end = text.find(USER_FLASH_TEXT_END);
    if (body_end == std::string_view::npos || text_end == std::string_view::npos || text_end < body_end) {
        return std::nullopt;
    }
    return USER_FLASH_PIECES{text.substr(0, body_end), text.substr(body_end + 1, text_end - body_end - 1)};
}

std::optional<std::string_view> next_user_flash_value(std::string_view body, QWORD& position) {
    if (position > body.size()) {
        return std::nullopt;
    }
    const std::size_t first = body.find(USER_FLASH_VALUE_MARK, static_cast<std::size_t>(position));
    if (first == std::string_view::npos) {
        return std::nullopt;
    }
    const std::size_t second = body.find(USER_FLASH_VALUE_MARK, first + 1);
    if (second == std::string_view::npos) {
        return std::nullopt;
    }
    position = second;
    return body.substr(first + 1, second - first - 1);
}

std::size_t assign_user_flash(std::span<const std::string, USER_FLASH_VALUES> values, RECORD& record) {
    std::size_t i = 0;
    const auto accepts = [&](auto field) { return assign(record, field, values[i]); };
    while (i < values.size() && std::visit(accepts, PGMDEV_SFL_FLASH_MEMBERS[i].field)) {
        ++i;
    }
    return i;
}

std::string user_flash_body(const RECORD& record) {
    std::string body(1, USER_FLASH_VALUE_MARK);
    for (const PGMDEV_SFL_FLASH_MEMBER& member : PGMDEV_SFL_FLASH_MEMBERS) {
        body += std::visit([&record](auto field) { return spelled(record.*field); }, member.field);
        body += USER_FLASH_VALUE_MARK;
    }
    return body;
}

std::string_view accepted_user_flash_values(const PGMDEV_SFL_FLASH_MEMBER& member) {
    if (member.type() == PGMDEV_MANAGER_BOOL) {
        return "1 or 0";
    }
    return is_signed(std::get<BYTE RECORD::*>(member.field)) ? "a number up to 255" : "a number from 0 to 255";
}

std::span<const USER_FLASH_RULE> user_flash_rules() {
    return RULES;
}

bool is_plausible_user_flash(const RECORD& record) {
    return std::all_of(RULES.begin(), RULES.end(), [&](const USER_FLASH_RULE& rule) { return rule.holds(record); });
}

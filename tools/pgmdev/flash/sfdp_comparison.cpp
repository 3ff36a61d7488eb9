#include "flash/sfdp_comparison.h"

#include <fmt/core.h>

#include <algorithm>
#include <array>
#include <optional>

#include "flash/sfdp_text.h"
#include "terminal/schema.h"
#include "terminal/text_table.h"

namespace {

using RECORD = PGMDEV_SFL_FLASH_INFO;
using BASIC_TABLE = PGMDEV_FLASH_SFDP::BASIC_TABLE;

/// What the flash says of a member.
struct CHIPS_WORD {
    std::string text;
    bool agrees = true;
};

std::optional<CHIPS_WORD> word_on_size(const RECORD& record, const PGMDEV_FLASH_SFDP& sfdp) {
    const auto& bits = sfdp.basic().density_bits;
    return bits ? std::optional(CHIPS_WORD{fmt::format("{} bits", *bits), *bits == record.device_bit_size})
                : std::nullopt;
}

const PGMDEV_FLASH_SFDP::ERASE_TYPE* erase_of(const PGMDEV_FLASH_SFDP& sfdp, DWORD bytes) {
    const auto& types = sfdp.basic().erase_types;
    const auto found =
        std::find_if(types.begin(), types.end(), [bytes](const auto& type) { return type.bytes == bytes; });
    return found != types.end() ? &*found : nullptr;
}

std::optional<CHIPS_WORD> word_on_sectors(const RECORD& record, const PGMDEV_FLASH_SFDP& sfdp) {
    std::string text;
    for (const PGMDEV_FLASH_SFDP::ERASE_TYPE& type : sfdp.basic().erase_types) {
        text += fmt::format("{}{} bytes with {:02X}", text.empty() ? "" : ", ", type.bytes, type.opcode);
    }
    if (text.empty()) {
        return std::nullopt;
    }
    text += sfdp.hybrid() ? "; not all everywhere (sector map)" : "";
    return CHIPS_WORD{text, erase_of(sfdp, record.device_sector_byte) != nullptr};
}

std::optional<CHIPS_WORD> word_on_addresses(const RECORD& record, const PGMDEV_FLASH_SFDP& sfdp) {
    const BASIC_TABLE& basic = sfdp.basic();
    const bool has_opcodes = sfdp.four_byte() && !sfdp.four_byte()->support.empty();
    const bool has_mode = basic.enter_4byte && !basic.enter_4byte->empty();
    const bool takes_4 = basic.address_code == 1 || basic.address_code == 2 || has_opcodes || has_mode;
    const bool takes_3 = basic.address_code != 2;
    constexpr QWORD REACH_OF_3_BYTES = QWORD{1} << 24;
    const bool needs_4 = basic.bytes() > REACH_OF_3_BYTES;
    return CHIPS_WORD{PGMDEV_FLASH_SFDP::address_text(basic.address_code) + "-byte addresses" +
                          (has_mode ? ", a 4-byte mode" : "") + (has_opcodes ? ", opcodes with 4" : ""),
                      record.byte4_addressing ? takes_4 : takes_3 && !needs_4};
}

std::optional<CHIPS_WORD> word_on_flag_status(const RECORD& record, const PGMDEV_FLASH_SFDP& sfdp) {
    const auto& polling = sfdp.basic().status_polling;
    if (!polling || polling->empty()) {
        return std::nullopt;
    }
    std::string text = "ready by";
    for (const std::string& each : *polling) {
        text += (each == polling->front() ? " " : " or ") + each;
    }
    const bool only_flag_status = sfdp.polls_flag_status() && polling->size() == 1;
    return CHIPS_WORD{text, record.flag_status ? sfdp.polls_flag_status() : !only_flag_status};
}

std::optional<CHIPS_WORD> word_on_single_bytes(const RECORD& record, const PGMDEV_FLASH_SFDP& sfdp) {
    const bool single = sfdp.basic().write_granularity == 1;
    return CHIPS_WORD{single ? "written by single bytes" : "written by 64 bytes or more", !record.aai_mode || single};
}

/// `given` units of the record are `scale` of the flash's each.
CHIPS_WORD word_on_time(QWORD given, QWORD scale, const PGMDEV_FLASH_SFDP::DURATION& time, const char* unit) {
    CHIPS_WORD word{duration_text(time, unit), given == 0 || given * scale >= time.typical};
    word.text += given == 0 ? ", taken: the record has none" : "";
    return word;
}

constexpr QWORD MS_PER_S = 1000;

std::optional<CHIPS_WORD> word_on_bulk_erase(const RECORD& record, const PGMDEV_FLASH_SFDP& sfdp) {
    if (!sfdp.basic().chip_erase_ms) {
        return std::nullopt;
    }
    const DWORD dies = std::max<DWORD>(record.die_count, 1);
    const PGMDEV_FLASH_SFDP::DURATION& die = *sfdp.basic().chip_erase_ms;
    CHIPS_WORD word = word_on_time(record.bulk_erase_time, MS_PER_S, die, "ms");
    if (dies > 1) {
        word.text += fmt::format(", each of {} dies", dies);
        word.agrees = record.bulk_erase_time == 0 || record.bulk_erase_time * MS_PER_S >= QWORD{die.typical} * dies;
    }
    return word;
}

std::optional<CHIPS_WORD> word_on_sector_erase(const RECORD& record, const PGMDEV_FLASH_SFDP& sfdp) {
    const PGMDEV_FLASH_SFDP::ERASE_TYPE* type = erase_of(sfdp, record.device_sector_byte);
    type = type != nullptr ? type : sfdp.sector_erase();
    if (type == nullptr || !type->ms) {
        return std::nullopt;
    }
    CHIPS_WORD word = word_on_time(record.sec_erase_time, MS_PER_S, *type->ms, "ms");
    word.text += type->bytes != record.device_sector_byte ? fmt::format(" (of {} bytes)", type->bytes) : "";
    return word;
}

std::optional<CHIPS_WORD> word_on_program(const RECORD& record, const PGMDEV_FLASH_SFDP& sfdp) {
    const auto& time = record.aai_mode ? sfdp.basic().first_byte_us : sfdp.basic().page_program_us;
    return time ? std::optional(word_on_time(record.program_utime, 1, *time, "us")) : std::nullopt;
}

struct WORD_ON_MEMBER {
    std::string_view member;
    std::optional<CHIPS_WORD> (*ask)(const RECORD& record, const PGMDEV_FLASH_SFDP& sfdp);
};

constexpr std::array WORDS_ON_MEMBERS{
    WORD_ON_MEMBER{"device_bit_size", word_on_size},        WORD_ON_MEMBER{"device_sector_byte", word_on_sectors},
    WORD_ON_MEMBER{"byte4_addressing", word_on_addresses},  WORD_ON_MEMBER{"flag_status", word_on_flag_status},
    WORD_ON_MEMBER{"aai_mode", word_on_single_bytes},       WORD_ON_MEMBER{"bulk_erase_time", word_on_bulk_erase},
    WORD_ON_MEMBER{"sec_erase_time", word_on_sector_erase}, WORD_ON_MEMBER{"program_utime", word_on_program},
};

const PGMDEV_SFL_FLASH_MEMBER& member_named(std::string_view name) {
    return *std::find_if(PGMDEV_SFL_FLASH_MEMBERS.begin(), PGMDEV_SFL_FLASH_MEMBERS.end(),
                         [name](const PGMDEV_SFL_FLASH_MEMBER& member) { return member.name == name; });
}

}  // namespace

std::vector<COMPARED_MEMBER> compare_with_sfdp(const RECORD& record, const PGMDEV_FLASH_SFDP& sfdp) {
    std::vector<COMPARED_MEMBER> members;
    for (const WORD_ON_MEMBER& each : WORDS_ON_MEMBERS) {
        if (const std::optional<CHIPS_WORD> word = each.ask(record, sfdp)) {
            const PGMDEV_SFL_FLASH_MEMBER& member = member_named(each.member);
            const auto cell = [&](auto field) { return pgmdev_cell(record.*field, member.base); };
            members.push_back({std::string(member.name), std::string(member.unit), std::visit(cell, member.field),
                               word->text, word->agrees});
        }
    }
    return members;
}

JSON comparison_json(const std::vector<COMPARED_MEMBER>& members) {
    JSON array = JSON::array();
    for (const COMPARED_MEMBER& each : members) {
        array.push_back({{"member", each.member},
                         {"unit", each.unit},
                         {"record", each.record},
                         {"chip", each.chip},
                         {"agrees", each.agrees}});
    }
    return array;
}

JSON comparison_schema() {
    return array_schema(object_schema({{"member", text_schema()},
                                       {"unit", text_schema()},
                                       {"record", text_schema()},
                                       {"chip", text_schema()},
                                       {"agrees", flag_schema()}}));
}

void print_comparison(const std::vector<COMPARED_MEMBER>& members) {
    const auto differing = std::count_if(members.begin(), members.end(), [](const auto& each) { return !each.agrees; });
    fmt::print("The record beside what the flash says of itself, {} of {} members disagree:\n", differing,
               members.size());
    TEXT_TABLE table({"", "member", "record", "flash"});
    for (const COMPARED_MEMBER& each : members) {
        table.add(
            {each.agrees ? "" : "!", each.member, each.record + (each.unit.empty() ? "" : " " + each.unit), each.chip});
    }
    table.print();
}

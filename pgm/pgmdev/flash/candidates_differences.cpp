#include <algorithm>
#include <charconv>
#include <string>

#include "pgmdev_flash_candidates.h"

// What differs between two records, and what a mistake between them does.

namespace {

using RECORD = PGMDEV_SFL_FLASH_INFO;
using DIFFERENCE = PGMDEV_FLASH_DIFFERENCE;
using RISK = PGMDEV_FLASH_DIFFERENCE::RISK;

std::string bytes_text(QWORD bytes) {
    constexpr DWORD KIB = 1024;
    return bytes != 0 && bytes % KIB == 0 ? std::to_string(bytes / KIB) + " KiB" : std::to_string(bytes) + " bytes";
}

std::string dies_text(DWORD dies) {
    return std::to_string(dies) + (dies == 1 ? " die" : " dies");
}

std::string sector_harm(const RECORD& taken, const RECORD& other) {
    const std::string sectors =
        bytes_text(other.device_sector_byte) + " sectors: erasing by " + bytes_text(taken.device_sector_byte);
    return other.device_sector_byte > taken.device_sector_byte
               ? sectors + " would wipe the neighbours"
               : sectors + " would leave the rest of each sector as it was";
}

std::string capacity_harm(const RECORD& taken, const RECORD& other) {
    const std::string size = bytes_text(other.device_bit_size / 8) + " of capacity: ";
    const std::string driven = bytes_text(taken.device_bit_size / 8);
    return other.device_bit_size > taken.device_bit_size
               ? size + "what is beyond " + driven + " would be out of reach"
               : size + "what is written beyond it, as if there were " + driven + ", would overwrite the beginning";
}

std::string dies_harm(const RECORD& taken, const RECORD& other) {
    const std::string dies = dies_text(other.die_count) + ": erasing " + dies_text(taken.die_count);
    return other.die_count > taken.die_count ? dies + " would leave the others as they were, or out of reach"
                                             : dies + " would end in errors, or erase a die twice";
}

std::string addressing_harm(const RECORD& /*taken*/, const RECORD& other) {
    return std::string(other.byte4_addressing ? "4-byte" : "3-byte") +
           " addresses: with others, data would land in wrong places";
}

std::string half_size_harm(const RECORD& /*taken*/, const RECORD& other) {
    return other.half_size ? "only half of it may be used: what is beyond would be lost"
                           : "all of it may be used: half would be out of reach";
}

std::string aai_harm(const RECORD& /*taken*/, const RECORD& other) {
    return other.aai_mode ? "programmed by address increment: programming by pages would write the first byte only"
                          : "programmed by pages: programming by address increment would write nothing";
}

double volts_of(const std::string& voltage) {
    double volts = 0;  // where there is no number
    std::from_chars(voltage.data(), voltage.data() + voltage.size(), volts);
    return volts;
}

std::string voltage_harm(const RECORD& taken, const RECORD& other) {
    return "a part for " + other.asc_voltage + ": " +
           (volts_of(taken.asc_voltage) > volts_of(other.asc_voltage)
                ? taken.asc_voltage + " on it may destroy it"
                : "at " + taken.asc_voltage + " it neither reads nor writes reliably");
}

std::string mask_harm(const RECORD& taken, const RECORD& other) {
    const auto strange = static_cast<BYTE>(taken.protection_mask & ~other.protection_mask);
    const auto missed = static_cast<BYTE>(other.protection_mask & ~taken.protection_mask);
    if (strange != 0) {
        return "status-register bits " + pgmdev_cell(strange, PGMDEV_NUMBER_BASE::BASE_16) +
               " mean something else: writing the protection would change that";
    }
    return "protected by status-register bits " + pgmdev_cell(missed, PGMDEV_NUMBER_BASE::BASE_16) +
           ", too: blocks may stay protected";
}

std::string protection_harm(const RECORD& /*taken*/, const RECORD& /*other*/) {
    return "protected and unprotected by other values: blocks may stay protected, or be unprotected unasked";
}

std::string startup_harm(const RECORD& /*taken*/, const RECORD& other) {
    return other.startup_protected ? "protected after power-up: erasing and programming would do nothing" : "";
}

std::string flow_harm(const RECORD& /*taken*/, const RECORD& /*other*/) {
    return "driven in another way: the operation may fail, or its failure may go unnoticed";
}

template <DWORD RECORD::*TIME>
std::string time_harm(const RECORD& taken, const RECORD& other) {
    return other.*TIME > taken.*TIME ? "takes longer: the operation may be given up before its end" : "";
}

std::string no_harm(const RECORD& /*taken*/, const RECORD& /*other*/) {
    return "";
}

/// A member that matters for driving a flash.
struct RULE {
    std::string_view member;
    RISK risk;
    std::string (*harm)(const RECORD& taken, const RECORD& other);
};

/// The worst first.
constexpr RULE RULES[]{
    {"device_sector_byte", RISK::DATA, sector_harm},
    {"device_bit_size", RISK::DATA, capacity_harm},
    {"die_count", RISK::DATA, dies_harm},
    {"byte4_addressing", RISK::DATA, addressing_harm},
    {"half_size", RISK::DATA, half_size_harm},
    {"aai_mode", RISK::DATA, aai_harm},
    {"asc_voltage", RISK::VOLTAGE, voltage_harm},
    {"protection_mask", RISK::PROTECTION, mask_harm},
    {"protection_value", RISK::PROTECTION, protection_harm},
    {"unprotect_value", RISK::PROTECTION, protection_harm},
    {"protection_division", RISK::PROTECTION, protection_harm},
    {"bottom_value", RISK::PROTECTION, protection_harm},
    {"startup_protected", RISK::PROTECTION, startup_harm},
    {"micron_flow", RISK::FLOW, flow_harm},
    {"spansion_flow", RISK::FLOW, flow_harm},
    {"flag_status", RISK::FLOW, flow_harm},
    {"bulk_erase_time", RISK::TIME, time_harm<&RECORD::bulk_erase_time>},
    {"sec_erase_time", RISK::TIME, time_harm<&RECORD::sec_erase_time>},
    {"program_utime", RISK::TIME, time_harm<&RECORD::program_utime>},
    {"extended_mode", RISK::NONE, no_harm},
    {"sdm_support", RISK::NONE, no_harm},
};

std::string value_text(const PGMDEV_SFL_FLASH_MEMBER& member, const RECORD& record) {
    const std::string cell =
        std::visit([&](auto field) { return pgmdev_cell(record.*field, member.base); }, member.field);
    return member.unit.empty() ? cell : cell + " " + std::string(member.unit);
}

bool differ(const PGMDEV_SFL_FLASH_MEMBER& member, const RECORD& a, const RECORD& b) {
    return std::visit([&](auto field) { return a.*field != b.*field; }, member.field);
}

const PGMDEV_SFL_FLASH_MEMBER& member_of(std::string_view name) {
    return *std::find_if(PGMDEV_SFL_FLASH_MEMBERS.begin(), PGMDEV_SFL_FLASH_MEMBERS.end(),
                         [name](const PGMDEV_SFL_FLASH_MEMBER& member) { return member.name == name; });
}

}  // namespace

std::vector<PGMDEV_FLASH_DIFFERENCE> PGMDEV_FLASH_CANDIDATES::differences(const PGMDEV_SFL_FLASH_INFO& taken,
                                                                          const PGMDEV_SFL_FLASH_INFO& other) {
    std::vector<DIFFERENCE> differences;
    for (const RULE& rule : RULES) {
        const PGMDEV_SFL_FLASH_MEMBER& member = member_of(rule.member);
        if (differ(member, taken, other)) {
            std::string harm = rule.harm(taken, other);
            const RISK risk = harm.empty() ? RISK::NONE : rule.risk;
            differences.push_back(
                {member.name, risk, value_text(member, taken), value_text(member, other), std::move(harm)});
        }
    }
    std::stable_sort(differences.begin(), differences.end(),
                     [](const DIFFERENCE& a, const DIFFERENCE& b) { return a.risk < b.risk; });
    return differences;
}

const char* PGMDEV_FLASH_CANDIDATES::risk_name(PGMDEV_FLASH_DIFFERENCE::RISK risk) {
    constexpr const char* NAMES[]{"data", "voltage", "protection", "flow", "time", "none"};
    return NAMES[static_cast<std::size_t>(risk)];
}

#include <algorithm>
#include <array>

#include "sfdp/area.h"

// The record of a flash from its own words. What these do not tell is assumed, and said to be.

namespace {

using SFDP = PGMDEV_FLASH_SFDP;
using RECORD = PGMDEV_SFL_FLASH_INFO;

constexpr QWORD MBIT = QWORD{1} << 20;
constexpr QWORD REACH_OF_3_BYTES = 128 * MBIT;  ///< in bits

/// The code of a density class, and the size from which it counts.
struct DENSITY_CLASS {
    QWORD mbit;
    BYTE code;
};
constexpr std::array DENSITY_CLASSES{DENSITY_CLASS{512, 32}, DENSITY_CLASS{256, 25}, DENSITY_CLASS{128, 24},
                                     DENSITY_CLASS{64, 22},  DENSITY_CLASS{32, 21},  DENSITY_CLASS{16, 20},
                                     DENSITY_CLASS{4, 18},   DENSITY_CLASS{0, 16}};

constexpr std::array<BYTE, 2> MICRON_IDS{0x20, 0x2C};
constexpr BYTE SPANSION_ID = 0x01;

// Of flash that tells no times: longer than any known one of its kind takes.
constexpr DWORD SECTOR_ERASE_S = 5;
constexpr DWORD BULK_ERASE_S_PER_MBIT = 4;
constexpr DWORD LONGEST_BULK_ERASE_S = 900;
constexpr DWORD PROGRAM_US = 5000;

using DERIVED = SFDP::DERIVED_RECORD;

void assume(DERIVED& derived, std::string member, std::string why) {
    derived.assumed.emplace_back(std::move(member), std::move(why));
}

DWORD whole_seconds(DWORD ms) {
    return ms / 1000 + (ms % 1000 != 0 ? 1 : 0);
}

void take_identification(std::span<const BYTE> id, DERIVED& derived) {
    const auto at = [id](std::size_t place) { return place < id.size() ? id[place] : BYTE{0}; };
    RECORD& record = derived.record;
    record.mfc_id = at(0);
    record.memory_type = at(1);
    record.memory_id = at(2);
    record.mfc_id_index = 0;
    record.memory_type_index = 1;
    record.memory_id_index = 2;
    record.manufacturer_name = "UNKNOWN";
    record.device_name = "UNKNOWN";
    if (!id.empty()) {
        record.device_name += "-";
        for (const BYTE byte : id.first(std::min<std::size_t>(id.size(), 6))) {
            record.device_name += sfdp_hex(byte);
        }
    }
    assume(derived, "manufacturer_name", "a name for it: the title page of the data sheet has it");
    assume(derived, "device_name", "a name for it: the title page of the data sheet has it");
    if (id.size() < 3) {
        assume(derived, "memory_id", "00, and so are the other identification bytes that were not given");
    }
    record.default_dev = true;
    record.ini = "NONE";
}

void take_geometry(const SFDP& sfdp, DERIVED& derived) {
    RECORD& record = derived.record;
    const QWORD bits = *sfdp.basic().density_bits;
    record.device_bit_size = static_cast<DWORD>(bits);
    record.orvane_id = std::find_if(DENSITY_CLASSES.begin(), DENSITY_CLASSES.end(), [bits](const DENSITY_CLASS& each) {
                           return bits >= each.mbit * MBIT;
                       })->code;
    record.extended_mode = bits > REACH_OF_3_BYTES;
    record.byte4_addressing = bits > REACH_OF_3_BYTES || sfdp.basic().address_code == 2;
    record.die_count = 1;
    assume(derived, "die_count", "1: a chip does not tell how many dies it has");
    record.device_sector_byte = sfdp.sector_erase()->bytes;
    if (sfdp.hybrid()) {
        assume(derived, "device_sector_byte",
               "the largest that erase everywhere, or else the largest: regions differ (see the sector map)");
    }
}

void take_times(const SFDP& sfdp, DERIVED& derived) {
    RECORD& record = derived.record;
    const SFDP::BASIC_TABLE& basic = sfdp.basic();
    if (const auto& time = sfdp.sector_erase()->ms) {
        record.sec_erase_time = whole_seconds(time->longest);
    } else {
        record.sec_erase_time = SECTOR_ERASE_S;
        assume(derived, "sec_erase_time", "5 s: the table has no word 10");
    }
    if (basic.page_program_us && basic.chip_erase_ms) {
        record.program_utime = basic.page_program_us->longest;
        record.bulk_erase_time = whole_seconds(basic.chip_erase_ms->longest);
        return;
    }
    const QWORD mbit = std::max<QWORD>(*basic.density_bits / MBIT, 1);
    record.program_utime = PROGRAM_US;
    record.bulk_erase_time = static_cast<DWORD>(std::min<QWORD>(mbit * BULK_ERASE_S_PER_MBIT, LONGEST_BULK_ERASE_S));
    assume(derived, "bulk_erase_time", "4 s for each Mbit, at most 900 s: the table has no word 11");
    assume(derived, "program_utime", "5000 us: the table has no word 11");
}

void take_flows(const SFDP& sfdp, DERIVED& derived) {
    RECORD& record = derived.record;
    record.flag_status = sfdp.polls_flag_status();
    if (!sfdp.basic().status_polling) {
        assume(derived, "flag_status", "FALSE: the table has no word 14");
    }
    const bool is_micron = std::find(MICRON_IDS.begin(), MICRON_IDS.end(), record.mfc_id) != MICRON_IDS.end();
    record.micron_flow = is_micron && record.flag_status;
    record.spansion_flow = record.mfc_id == SPANSION_ID;
    assume(derived, "startup_protected", "FALSE: not told");
    assume(derived, "aai_mode",
           sfdp.basic().write_granularity == 1
               ? "FALSE: not told, but it is written by single bytes (word 1 bit 2): look it up"
               : "FALSE: not told");
}

void take_the_rest(DERIVED& derived) {
    RECORD& record = derived.record;
    record.protection_division = RECORD::NONE;
    record.bottom_value = RECORD::NONE;
    record.asc_voltage = "3.3V";
    assume(derived, "protection_mask", "00, no protection bits: not told, nor are value, unprotect value and division");
    assume(derived, "bottom_value", "255, no such bit: not told");
    assume(derived, "sdm_support", "FALSE: the supply voltage is not told");
    assume(derived, "asc_voltage", "3.3V: not told; make sure before you connect it");
}

}  // namespace

SFDP::DERIVED_RECORD SFDP::record(std::span<const BYTE> id) const {
    DERIVED_RECORD derived;
    if (m_refusal) {
        derived.obstacle = describe(*m_refusal);
    } else if (!m_basic.density_bits || *m_basic.density_bits < 8 || *m_basic.density_bits > 0xFFFFFFFF) {
        derived.obstacle = "its size is not known, or not below the 4 Gbit that a record can state";
    } else if (m_basic.erase_types.empty()) {
        derived.obstacle = "it has no erase type, so that there is no sector size";
    } else {
        take_identification(id, derived);
        take_geometry(*this, derived);
        take_times(*this, derived);
        take_flows(*this, derived);
        take_the_rest(derived);
    }
    return derived;
}

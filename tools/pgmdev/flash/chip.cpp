#include "flash/chip.h"

#include <fmt/core.h>

#include <algorithm>
#include <array>
#include <set>

#include "fio.h"
#include "flash/chip_value.h"
#include "flash/flash_like.h"
#include "flash/sfdp_dump.h"
#include "gen.h"
#include "pgmdev_user_flash.h"
#include "terminal/did_you_mean.h"
#include "terminal/input.h"

namespace {

using RECORD = PGMDEV_SFL_FLASH_INFO;
using MEMBER = PGMDEV_SFL_FLASH_MEMBER;
using ASKED = PGMDEV_SFL_FLASH_QUESTION::ANSWER;

constexpr std::array SOURCE_FIELDS{LIKE_FIELD, SFDP_FIELD, ID_FIELD};

constexpr std::size_t ID_BYTES = 3;
constexpr DWORD THREE_BYTE_ADDRESSES = 0x8000000;  ///< bits that 24-bit addresses reach

/// What a member is that nothing tells.
struct DEFAULT {
    std::string_view member;
    const char* value;
    const char* why;
};

constexpr const char* USUAL = "the usual place: maker, type and capacity byte in this order";
constexpr const char* NO_FLOW = "as most flash";
constexpr const char* NO_PROTECTION = "no protection bits are known";

constexpr std::array DEFAULTS{DEFAULT{"memory_id_index", "2", USUAL},
                              DEFAULT{"memory_type_index", "1", USUAL},
                              DEFAULT{"mfc_id_index", "0", USUAL},
                              DEFAULT{"micron_flow", "no", NO_FLOW},
                              DEFAULT{"spansion_flow", "no", NO_FLOW},
                              DEFAULT{"startup_protected", "no", NO_FLOW},
                              DEFAULT{"aai_mode", "no", NO_FLOW},
                              DEFAULT{"flag_status", "no", NO_FLOW},
                              DEFAULT{"die_count", "1", NO_FLOW},
                              DEFAULT{"protection_mask", "0", NO_PROTECTION},
                              DEFAULT{"protection_value", "0", NO_PROTECTION},
                              DEFAULT{"unprotect_value", "0", NO_PROTECTION},
                              DEFAULT{"protection_division", "none", NO_PROTECTION},
                              DEFAULT{"bottom_value", "none", NO_PROTECTION},
                              DEFAULT{"sdm_support", "no", NO_FLOW}};

/// What SFDP tells, unless it says that it was assumed. Of a flash that is like another one, the rest is as there.
constexpr std::array<std::string_view, 11> TOLD_BY_SFDP{
    "extended_mode",    "micron_flow",     "spansion_flow",  "flag_status",   "device_bit_size", "device_sector_byte",
    "byte4_addressing", "bulk_erase_time", "sec_erase_time", "program_utime", "orvane_id"};

bool is_given(const MEMBER& member) {
    return member.question.answer == ASKED::GIVEN;
}

void copy_member(const MEMBER& member, const RECORD& from, RECORD& to) {
    std::visit([&](auto field) { to.*field = from.*field; }, member.field);
}

std::vector<std::string> field_names() {
    std::vector<std::string> names(SOURCE_FIELDS.begin(), SOURCE_FIELDS.end());
    for (const MEMBER& member : PGMDEV_SFL_FLASH_MEMBERS) {
        names.emplace_back(member.name);
    }
    return names;
}

/// Makes a record of what is written of one flash.
class CHIP_MAKER {
public:
    CHIP_MAKER(const CHIP_TEXT& text, std::vector<FIELD_FAULT>& faults) : m_text(text), m_faults(faults) {}

    USER_CHIP make() {
        const std::size_t faults_before = m_faults.size();
        look_for_strangers();
        take_defaults();
        take_like();
        take_identification();
        take_sfdp();
        take_members();
        look_for_missing();
        derive_the_rest();
        if (m_faults.size() == faults_before) {
            look_for_implausible();
        }
        return std::move(m_chip);
    }

private:
    const CHIP_ENTRY* entry(std::string_view name) const {
        const auto found = std::find_if(m_text.entries.begin(), m_text.entries.end(),
                                        [name](const CHIP_ENTRY& each) { return gen_stricmp(each.name, name) == 0; });
        return found != m_text.entries.end() ? &*found : nullptr;
    }

    void refuse(const CHIP_ENTRY& of, std::string accepted, std::string advice = "") {
        m_faults.push_back({of.place, of.name, of.value, std::move(accepted), std::move(advice), of.line});
    }

    void assume(std::string_view member, std::string why) {
        forget_assumption(member);
        m_chip.assumed.push_back({std::string(member), std::move(why)});
    }

    void forget_assumption(std::string_view member) {
        std::erase_if(m_chip.assumed, [member](const ASSUMED_MEMBER& each) { return each.member == member; });
    }

    void look_for_strangers() {
        std::set<std::string> seen;
        for (const CHIP_ENTRY& each : m_text.entries) {
            const bool is_source = std::any_of(SOURCE_FIELDS.begin(), SOURCE_FIELDS.end(),
                                               [&each](const char* name) { return gen_stricmp(each.name, name) == 0; });
            if (!is_source && find_flash_member(each.name) == nullptr) {
                refuse(each, "no such field: the members that flash show lists, like, sfdp and id",
                       nearest_advice(each.name, field_names()));
            } else if (!seen.insert(gen_ascii_toupper(each.name)).second) {
                refuse(each, "each field once", "a line [NAME] begins another flash");
            }
        }
    }

    /// The member is known now.
    void know(std::string_view member) { m_known.insert(std::string(member)); }

    void take_defaults() {
        for (const MEMBER& member : PGMDEV_SFL_FLASH_MEMBERS) {
            if (is_given(member)) {
                take_given(member);
            }
        }
        for (const DEFAULT& each : DEFAULTS) {
            take_chip_value(m_chip.record, *find_flash_member(std::string(each.member)), each.value);
            know(each.member);
            assume(each.member, fmt::format("{}: {}", each.value, each.why));
        }
    }

    /// As the dialogue does.
    void take_given(const MEMBER& member) {
        const std::string text(member.question.text);
        std::visit(
            [&](auto field) {
                using VALUE = std::remove_reference_t<decltype(m_chip.record.*field)>;
                if constexpr (std::is_same_v<VALUE, std::string>) {
                    m_chip.record.*field = text;
                } else if constexpr (std::is_same_v<VALUE, bool>) {
                    m_chip.record.*field = text == "1";
                } else {
                    m_chip.record.*field = static_cast<VALUE>(std::stoul(text));
                }
            },
            member.field);
        know(member.name);
    }

    void take_like() {
        const CHIP_ENTRY* const like = entry(LIKE_FIELD);
        if (like == nullptr) {
            return;
        }
        const std::optional<RECORD> row = row_like(like->value);
        if (!row) {
            refuse(*like, "a flash of the database, or another name of one", rows_near(like->value));
        } else if (row->silicon_id) {
            refuse(*like, "a flash that answers RDID", "this one answers one byte, an electronic signature");
        }
        m_is_like = true;
        for (const MEMBER& member : PGMDEV_SFL_FLASH_MEMBERS) {
            if (!is_given(member)) {
                copy_member(member, row.value_or(RECORD()), m_chip.record);
                know(member.name);
                forget_assumption(member.name);
                raise(member, fmt::format("{} has less", like->value));
            }
        }
    }

    void take_identification() {
        const CHIP_ENTRY* const id = entry(ID_FIELD);
        if (id == nullptr) {
            return;
        }
        constexpr const char* ACCEPTED = "the 3 bytes of the response, in hexadecimal: maker, type, capacity";
        try {
            m_id = parse_id_response(id->value);
        } catch (const USAGE_ERROR& error) {
            refuse(*id, ACCEPTED, error.what());
            m_id.count = ID_BYTES;
        }
        if (m_id.count < ID_BYTES) {
            refuse(*id, ACCEPTED);
        }
        RECORD& record = m_chip.record;
        record.mfc_id = m_id.bytes[0];
        record.memory_type = m_id.bytes[1];
        record.memory_id = m_id.bytes[2];
        record.mfc_id_index = 0;
        record.memory_type_index = 1;
        record.memory_id_index = 2;
        for (const char* member :
             {"mfc_id", "memory_type", "memory_id", "mfc_id_index", "memory_type_index", "memory_id_index"}) {
            know(member);
            forget_assumption(member);
        }
    }

    void take_sfdp() {
        const CHIP_ENTRY* const dump = entry(SFDP_FIELD);
        if (dump == nullptr) {
            return;
        }
        PGMDEV_FLASH_SFDP::DERIVED_RECORD derived;
        constexpr const char* ACCEPTED = "an SFDP dump that a record follows from: see flash sfdp";
        try {
            derived = sfdp_of(dump_path(dump->value)).record({m_id.data(), m_id.count});
        } catch (const USAGE_ERROR& error) {
            refuse(*dump, ACCEPTED, error.what());
            derived.obstacle = error.what();
        } catch (const COMMAND_FAILURE& failure) {
            refuse(*dump, ACCEPTED, failure_text(failure.failure()));
            derived.obstacle = failure.what();
        }
        const bool is_refused = !derived.obstacle.empty();
        if (is_refused && (m_faults.empty() || m_faults.back().field != dump->name)) {
            refuse(*dump, ACCEPTED, derived.obstacle);
        }
        for (const std::string_view told : TOLD_BY_SFDP) {
            const MEMBER& member = *find_flash_member(std::string(told));
            const auto why = std::find_if(derived.assumed.begin(), derived.assumed.end(),
                                          [told](const auto& each) { return each.first == told; });
            const bool is_assumed = why != derived.assumed.end();
            if (is_given(member) || (is_assumed && m_is_like)) {
                continue;
            }
            if (!is_refused) {
                copy_member(member, derived.record, m_chip.record);
                forget_assumption(told);
                raise(member, "the flash has less");
                if (is_assumed) {
                    assume(told, why->second);
                }
            }
            know(told);  // a dump that is refused is one fault, not ten
        }
    }

    /// A dump that a file names is looked for beside it.
    std::string dump_path(const std::string& dump) const {
        const std::string beside = m_text.directory + dump;
        return FIO_FILE_SYSTEM::exists(FIO_PATH(beside).fullpath().c_str()) ? beside : dump;
    }

    void raise(const MEMBER& member, const std::string& why) {
        if (raise_chip_time(m_chip.record, member)) {
            assume(member.name,
                   fmt::format("{} {}: {}, which is below what can be described; a longer limit does no harm",
                               member.question.least, member.unit, why));
        }
    }

    void take_members() {
        for (const CHIP_ENTRY& each : m_text.entries) {
            const MEMBER* const member = find_flash_member(each.name);
            if (member == nullptr) {
                continue;
            }
            if (auto fault = take_chip_value(m_chip.record, *member, each.value)) {
                fault->place = each.place;
                fault->line = each.line;
                m_faults.push_back(std::move(*fault));
            }
            know(member->name);
            forget_assumption(member->name);
        }
    }

    void look_for_missing() {
        for (const MEMBER& member : PGMDEV_SFL_FLASH_MEMBERS) {
            const bool derives = member.name == "extended_mode";
            if (!derives && !m_known.contains(std::string(member.name))) {
                m_faults.push_back({place(), std::string(member.name), "", accepted_chip_values(member),
                                    is_identification(member.name) ? "id tells all three bytes" : "", line()});
            }
        }
    }

    static bool is_identification(std::string_view member) {
        return member == "mfc_id" || member == "memory_type" || member == "memory_id";
    }

    std::string place() const { return m_text.entries.empty() ? "" : m_text.entries.front().place; }
    std::size_t line() const { return m_text.entries.empty() ? 0 : m_text.entries.front().line; }

    void derive_the_rest() {
        RECORD& record = m_chip.record;
        const bool is_long = record.device_bit_size > THREE_BYTE_ADDRESSES;
        if (entry("byte4_addressing") == nullptr) {
            record.byte4_addressing = is_long;
        }
        if (!m_known.contains("extended_mode")) {
            record.extended_mode = is_long;
            assume("extended_mode", is_long ? "yes: larger than 128 Mbit" : "no: at most 128 Mbit");
        }
    }

    /// What no single answer tells: bytes of the response at the same place, and what is inherited.
    void look_for_implausible() {
        for (const auto& [member, found, expected] : PGMDEV_USER_FLASH::implausible(m_chip.record)) {
            const CHIP_ENTRY* const written = entry(member);
            m_faults.push_back({written != nullptr ? written->place : place(), member,
                                written != nullptr ? written->value : found, expected,
                                written != nullptr ? "" : fmt::format("write {}=", member),
                                written != nullptr ? written->line : line()});
        }
    }

    const CHIP_TEXT& m_text;
    std::vector<FIELD_FAULT>& m_faults;
    USER_CHIP m_chip;
    ID_RESPONSE m_id;
    std::set<std::string> m_known;
    bool m_is_like = false;
};

/// Faults of a file stand in the order of its lines, those of arguments before.
COMMAND_FAILURE refusal(std::vector<FIELD_FAULT> faults) {
    std::stable_sort(faults.begin(), faults.end(),
                     [](const FIELD_FAULT& a, const FIELD_FAULT& b) { return a.line < b.line; });
    const std::string message =
        fmt::format("the description is refused: {} fault{}", faults.size(), faults.size() == 1 ? "" : "s");
    return COMMAND_FAILURE({FAILURE_CODE::DESCRIPTION_REFUSED, message, "", {}, "", {}, std::move(faults)}, EXIT_USAGE);
}

}  // namespace

std::vector<USER_CHIP> user_chips(const std::vector<CHIP_TEXT>& texts, std::vector<FIELD_FAULT> faults) {
    std::vector<USER_CHIP> chips;
    chips.reserve(texts.size());
    for (const CHIP_TEXT& text : texts) {
        chips.push_back(CHIP_MAKER(text, faults).make());
    }
    if (texts.empty() || texts.size() > PGMDEV_USER_FLASH::MOST_FLASHES) {
        faults.push_back({"", "", fmt::format("{} flash devices", texts.size()),
                          fmt::format("1 to {}", PGMDEV_USER_FLASH::MOST_FLASHES), ""});
    }
    if (!faults.empty()) {
        throw refusal(std::move(faults));
    }
    return chips;
}

std::string encoded_chips(const std::vector<USER_CHIP>& chips) {
    std::vector<RECORD> records;
    records.reserve(chips.size());
    for (const USER_CHIP& chip : chips) {
        records.push_back(chip.record);
    }
    return PGMDEV_USER_FLASH::encode(records);
}

std::string user_flash_text(const std::string& argument) {
    if (!names_chip_file(argument)) {
        return argument;
    }
    std::vector<FIELD_FAULT> faults;
    const std::vector<CHIP_TEXT> texts = chips_of_file(argument.substr(1), faults);
    return encoded_chips(user_chips(texts, std::move(faults)));
}

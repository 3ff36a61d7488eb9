#include "flash/sfdp_ranking.h"

#include <fmt/core.h>

#include <algorithm>

#include "flash/sfdp_comparison.h"
#include "terminal/wrapped.h"

namespace {

using STANDING = PGMDEV_FLASH_CANDIDATE::STANDING;

/// The records in question, the one that it is mapped to first.
std::vector<DWORD> possible_records(const FLASH_IDENTIFICATION& device, const FLASH_IDENTIFIER& identifier) {
    std::vector<DWORD> records;
    const auto add = [&](DWORD index) {
        const std::string& name = identifier.record(index).device_name;
        if (std::none_of(records.begin(), records.end(),
                         [&](DWORD other) { return identifier.record(other).device_name == name; })) {
            records.push_back(index);
        }
    };
    if (device.is_mapped()) {
        add(device.index);
    }
    for (const PGMDEV_FLASH_CANDIDATE& candidate : device.answer.candidates.candidates()) {
        if (!device.is_by_hand() && candidate.standing != STANDING::PASSED_OVER &&
            candidate.standing != STANDING::RULED_OUT) {
            add(candidate.index);
        }
    }
    if (device.question.is_name) {
        std::for_each(device.nearest.begin(), device.nearest.end(), add);
    }
    return records;
}

/// What the size and the sectors of a flash are is no matter of opinion.
bool is_geometry(const std::string& member) {
    return member == "device_bit_size" || member == "device_sector_byte";
}

std::vector<std::string> contradicting_members(const PGMDEV_SFL_FLASH_INFO& record, const PGMDEV_FLASH_SFDP& sfdp) {
    std::vector<std::string> members;
    for (const COMPARED_MEMBER& each : compare_with_sfdp(record, sfdp)) {
        if (!each.agrees && is_geometry(each.member)) {
            members.push_back(each.member);
        }
    }
    return members;
}

std::string listed_names(const std::vector<RANKED_RECORD>& ranking, bool contradicting, const char* between,
                         const FLASH_IDENTIFIER& identifier) {
    std::string text;
    for (const RANKED_RECORD& each : ranking) {
        if (each.contradicting.empty() == contradicting) {
            continue;
        }
        text += (text.empty() ? "" : between) + identifier.record(each.index).device_name;
        std::string members;
        for (const std::string& member : each.contradicting) {
            members += (members.empty() ? " (" : ", ") + member;
        }
        text += members.empty() ? "" : members + ")";
    }
    return text;
}

}  // namespace

std::vector<RANKED_RECORD> rank_by_sfdp(const FLASH_IDENTIFICATION& device, const FLASH_IDENTIFIER& identifier,
                                        const PGMDEV_FLASH_SFDP& sfdp) {
    std::vector<RANKED_RECORD> ranking;
    for (const DWORD index : possible_records(device, identifier)) {
        ranking.push_back({index, contradicting_members(identifier.record(index), sfdp)});
    }
    std::stable_partition(ranking.begin(), ranking.end(),
                          [](const RANKED_RECORD& each) { return each.contradicting.empty(); });
    return ranking;
}

bool contradicts_mapping(const FLASH_IDENTIFICATION& device, const std::vector<RANKED_RECORD>& ranking) {
    return std::any_of(ranking.begin(), ranking.end(), [&device](const RANKED_RECORD& each) {
        return each.index == device.index && !each.contradicting.empty();
    });
}

JSON ranking_json(const std::vector<RANKED_RECORD>& ranking, const FLASH_IDENTIFIER& identifier) {
    JSON array = JSON::array();
    for (const RANKED_RECORD& each : ranking) {
        const PGMDEV_SFL_FLASH_INFO& record = identifier.record(each.index);
        array.push_back({{"index", each.index},
                         {"manufacturer_name", record.manufacturer_name},
                         {"device_name", record.device_name},
                         {"contradicting", each.contradicting}});
    }
    return array;
}

JSON ranking_schema() {
    return array_schema(object_schema({{"index", number_schema()},
                                       {"manufacturer_name", text_schema()},
                                       {"device_name", text_schema()},
                                       {"contradicting", array_schema(text_schema())}}));
}

void print_ranking(DWORD position, const FLASH_IDENTIFICATION& device, const std::vector<RANKED_RECORD>& ranking,
                   const FLASH_IDENTIFIER& identifier) {
    const std::string others = listed_names(ranking, true, ", ", identifier);
    const std::string fitting = listed_names(ranking, false, " or ", identifier);
    if (others.empty() || ranking.empty()) {
        if (ranking.size() > 1) {
            print_sentence("What the flash says of itself leaves all of them: " + fitting);
        }
        return;
    }
    if (fitting.empty()) {
        print_sentence("What the flash says of itself decides: it is none of these: " + others);
        return;
    }
    const bool taken_fits = !contradicts_mapping(device, ranking);
    print_sentence(fmt::format("What the flash says of itself decides: {}, and not {}{}", fitting, others,
                               taken_fits ? ""
                                          : fmt::format("; --as {}={} drives it so", position,
                                                        identifier.record(ranking.front().index).device_name)));
}

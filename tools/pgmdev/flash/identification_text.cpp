#include <fmt/core.h>

#include <algorithm>
#include <utility>

#include "flash/aliases.h"
#include "flash/identification.h"
#include "flash/output.h"
#include "terminal/wrapped.h"

// An identification for people: what may go wrong stands first.

namespace {

using RISK = PGMDEV_FLASH_DIFFERENCE::RISK;
using STANDING = PGMDEV_FLASH_CANDIDATE::STANDING;

constexpr std::size_t MOST_NAMES = 8;
constexpr std::size_t MOST_DANGERS = 12;

/// A mistake, what it does, and to which devices.
struct DANGER {
    RISK risk;
    std::string harm;
    std::vector<std::string> devices;
};

void print_part(std::string_view label, const std::string& text) {
    print_labelled(fmt::format("  {}", label), SUMMARY_COLUMN, text);
}

/// The names, the first few of them, without repeating any.
std::string joined(const std::vector<std::string>& names) {
    std::vector<std::string> different;
    for (const std::string& name : names) {
        if (std::find(different.begin(), different.end(), name) == different.end()) {
            different.push_back(name);
        }
    }
    std::string text;
    for (std::size_t i = 0; i < std::min(different.size(), MOST_NAMES); ++i) {
        text += (i == 0 ? "" : ", ") + different[i];
    }
    return different.size() > MOST_NAMES ? text + fmt::format(" and {} more", different.size() - MOST_NAMES) : text;
}

std::string bytes_to_read(const std::vector<BYTE>& missing) {
    return missing.empty() ? "" : fmt::format("; read {} bytes to tell", missing.back() + 1);
}

/// The bytes of the response that speak for the taken record alone.
std::string deciding_bytes(const PGMDEV_FLASH_CANDIDATE& taken, const PGMDEV_FLASH_CANDIDATE& other) {
    std::vector<PGMDEV_FLASH_COMPARED_BYTE> deciding;
    for (const PGMDEV_FLASH_COMPARED_BYTE& each : taken.compared) {
        const bool shared = std::any_of(other.compared.begin(), other.compared.end(),
                                        [&each](const auto& byte) { return byte.position == each.position; });
        if (!shared) {
            deciding.push_back(each);
        }
    }
    return compared_text(deciding);
}

std::vector<BYTE> missing_of(const PGMDEV_FLASH_CANDIDATE& candidate) {
    std::vector<BYTE> missing;
    for (const PGMDEV_FLASH_COMPARED_BYTE& each : candidate.compared) {
        if (!each.given) {
            missing.push_back(each.position);
        }
    }
    return missing;
}

bool is_possible(const PGMDEV_FLASH_CANDIDATE& candidate) {
    return candidate.standing != STANDING::PASSED_OVER && candidate.standing != STANDING::RULED_OUT;
}

void add_danger(std::vector<DANGER>& dangers, RISK risk, const std::string& harm, const std::string& device) {
    const auto same = [&harm](const DANGER& danger) { return danger.harm == harm; };
    const auto found = std::find_if(dangers.begin(), dangers.end(), same);
    if (found == dangers.end()) {
        dangers.push_back({risk, harm, {device}});
    } else {
        found->devices.push_back(device);
    }
}

/// Of each risk the worst difference.
void add_dangers(std::vector<DANGER>& dangers, const std::vector<PGMDEV_FLASH_DIFFERENCE>& differences,
                 const std::string& ending, const std::string& device) {
    RISK told = RISK::NONE;
    for (const PGMDEV_FLASH_DIFFERENCE& difference : differences) {
        if (difference.risk < RISK::FLOW && difference.risk != told) {
            told = difference.risk;
            add_danger(dangers, told, difference.harm + ending, device);
        }
    }
}

/// What driving it as the taken record says would do to each other device that it may be, for each risk the worst.
std::vector<DANGER> dangers_of(const FLASH_IDENTIFICATION& device, const FLASH_IDENTIFIER& identifier) {
    std::vector<DANGER> dangers;
    for (const PGMDEV_FLASH_CANDIDATE& candidate : device.answer.candidates.candidates()) {
        if (!device.question.is_name && is_possible(candidate)) {
            add_dangers(dangers, candidate.differences, bytes_to_read(missing_of(candidate)),
                        identifier.record(candidate.index).device_name);
        }
    }
    for (const DWORD index : device.nearest) {
        if (device.question.is_name && device.is_mapped()) {
            const PGMDEV_SFL_FLASH_INFO& other = identifier.record(index);
            add_dangers(dangers, PGMDEV_FLASH_CANDIDATES::differences(identifier.record(device.index), other), "",
                        other.device_name);
        }
    }
    std::stable_sort(dangers.begin(), dangers.end(), [](const DANGER& a, const DANGER& b) { return a.risk < b.risk; });
    return dangers;
}

void print_dangers(const FLASH_IDENTIFICATION& device, const FLASH_IDENTIFIER& identifier) {
    const std::vector<DANGER> dangers = dangers_of(device, identifier);
    for (std::size_t i = 0; i < std::min(dangers.size(), MOST_DANGERS); ++i) {
        print_part(i == 0 ? "danger" : "", joined(dangers[i].devices) + ": " + dangers[i].harm);
    }
    if (dangers.size() > MOST_DANGERS) {
        print_part("", fmt::format("and {} more, which --json lists", dangers.size() - MOST_DANGERS));
    }
    for (const PGMDEV_FLASH_AMBIGUITY& ambiguity : device.answer.ambiguities) {
        std::string chips;
        for (const std::string& chip : ambiguity.chips) {
            chips += (chips.empty() ? "" : " or ") + chip;
        }
        print_part("known", fmt::format("{}: {}", chips, ambiguity.harm));
        print_part("", fmt::format("told apart by {}", ambiguity.told_apart_by));
    }
}

std::string shared_record_text(const std::string& name) {
    const std::optional<FLASH_ALIAS> alias = find_flash_alias(name);
    return alias ? fmt::format(": {} shares the record of {}: {}", alias->name, alias->device_name, alias->reason) : "";
}

/// A name that was printed somewhere is mapped to what it stands for, and tells no response.
void print_name_certainty(const FLASH_IDENTIFICATION& device, const FLASH_IDENTIFIER& identifier) {
    print_part("named", "by a name alone, not by its response" + shared_record_text(device.question.by_hand));
    std::vector<std::string> all{identifier.record(device.index).device_name};
    for (const DWORD index : device.nearest) {
        all.push_back(identifier.record(index).device_name);
    }
    for (const PGMDEV_FLASH_AMBIGUITY& ambiguity : device.answer.ambiguities) {
        all.insert(all.end(), ambiguity.chips.begin(), ambiguity.chips.end());
    }
    if (std::count(all.begin(), all.end(), all.front()) != static_cast<std::ptrdiff_t>(all.size())) {
        print_part("one of", joined(all) + "; identify the bytes that it answers to RDID (9F) to tell");
    }
    print_dangers(device, identifier);
}

/// The device that is taken, and those that it may be instead.
std::vector<std::string> possible_devices(const FLASH_IDENTIFICATION& device, const FLASH_IDENTIFIER& identifier) {
    std::vector<std::string> names{identifier.record(device.index).device_name};
    for (const PGMDEV_FLASH_CANDIDATE& candidate : device.answer.candidates.candidates()) {
        if (is_possible(candidate)) {
            names.push_back(identifier.record(candidate.index).device_name);
        }
    }
    return names;
}

/// The devices that the response admits, and that the one which is taken compares more bytes than; each with these bytes.
std::vector<std::string> passed_over_devices(const FLASH_IDENTIFICATION& device, const FLASH_IDENTIFIER& identifier,
                                             const std::vector<std::string>& possible) {
    const std::vector<PGMDEV_FLASH_CANDIDATE>& all = device.answer.candidates.candidates();
    const auto taken = std::find_if(all.begin(), all.end(), [](const PGMDEV_FLASH_CANDIDATE& candidate) {
        return candidate.standing == STANDING::TAKEN;
    });
    std::vector<std::string> names;
    for (const PGMDEV_FLASH_CANDIDATE& candidate : all) {
        const std::string& name = identifier.record(candidate.index).device_name;
        const bool is_open = std::find(possible.begin(), possible.end(), name) != possible.end();  // by another row
        if (candidate.standing == STANDING::PASSED_OVER && taken != all.end() && !is_open) {
            names.push_back(fmt::format("{} ({} decides)", name, deciding_bytes(*taken, candidate)));
        }
    }
    return names;
}

/// How sure it is that the response is that of the device.
void print_sureness(const FLASH_IDENTIFICATION& device, const std::vector<std::string>& possible) {
    const PGMDEV_FLASH_CANDIDATES& all = device.answer.candidates;
    if (device.question.silicon_id) {
        print_part("like", joined(possible) + ": a signature names no maker, and several use the same ones");
    } else if (device.is_sure()) {
        print_part("sure", fmt::format("the {} bytes that tell something leave no other device", all.telling_count()));
    } else if (device.answer.contradictions.empty()) {
        std::vector<std::string> known = possible;
        for (const PGMDEV_FLASH_AMBIGUITY& ambiguity : device.answer.ambiguities) {
            known.insert(known.end(), ambiguity.chips.begin(), ambiguity.chips.end());
        }
        print_part("one of", joined(known) + bytes_to_read(all.missing_bytes()));
    }
}

void print_certainty(const FLASH_IDENTIFICATION& device, const FLASH_IDENTIFIER& identifier) {
    if (device.question.is_name) {
        print_name_certainty(device, identifier);
        return;
    }
    if (device.is_by_hand()) {
        print_part("mapped", "by hand" + shared_record_text(device.question.by_hand));
        return;
    }
    const std::vector<std::string> possible = possible_devices(device, identifier);
    print_sureness(device, possible);
    print_dangers(device, identifier);
    const std::vector<std::string> passed_over = passed_over_devices(device, identifier, possible);
    if (!passed_over.empty()) {
        print_part("passed over", joined(passed_over));
    }
}

void print_unmapped(DWORD position, const FLASH_IDENTIFICATION& device, const FLASH_IDENTIFIER& identifier) {
    print_sentence(fmt::format("Device {} ({}): no record {}", position, device.question.text,
                               device.question.is_name ? "has this name" : "matches"));
    if (device.answer.candidates.oddity().kind != PGMDEV_FLASH_ODDITY::KIND::NONE) {
        print_part("response", device.answer.candidates.oddity().text);
    }
    std::vector<std::string> names;
    for (const DWORD index : device.nearest) {
        const PGMDEV_SFL_FLASH_INFO& record = identifier.record(index);
        names.push_back(fmt::format("{} {} ({})", record.manufacturer_name, record.device_name,
                                    compared_text(PGMDEV_FLASH_CANDIDATES::compared_bytes(record, UINT8_MAX + 1))));
    }
    if (!names.empty()) {
        print_part(
            !device.question.is_name && device.nearest == device.answer.candidates.nearest() ? "near to" : "may be",
            joined(names) + bytes_to_read(device.answer.candidates.missing_bytes()));
    }
    print_dangers(device, identifier);
    if (device.answer.candidates.oddity().kind == PGMDEV_FLASH_ODDITY::KIND::NONE) {
        print_part("your own", "flash define describes a flash that no table has: guide your-own-flash.md");
    }
}

/// "00 to 3F" for "[0-3]?", which leaves the last digit open; other patterns are understood as they are.
std::string expected_text(const std::string& pattern) {
    constexpr std::size_t RANGE_LENGTH = 5;
    const bool is_range = pattern.size() == RANGE_LENGTH + 1 && pattern.front() == '[' && pattern.back() == '?';
    return is_range ? fmt::format("{}0 to {}F", pattern[1], pattern[3]) : pattern;
}

/// The response is not that of the device: what was compared, and what contradicts.
void print_contradictions(DWORD position, const FLASH_IDENTIFICATION& device, const PGMDEV_SFL_FLASH_INFO& record) {
    std::string text;
    for (const PGMDEV_FLASH_CONTRADICTION& each : device.answer.contradictions) {
        text += fmt::format("{}byte {} is {:02X}, not {}", text.empty() ? "" : ", ", each.position, each.found,
                            expected_text(each.expected));
    }
    std::string line =
        fmt::format("Device {} ({}): {}this is no {} {}: {}", position, device.question.text,
                    device.is_by_hand() ? "note: " : "", record.manufacturer_name, record.device_name, text);
    if (!device.is_by_hand()) {
        line +=
            "; it is mapped by " +
            compared_text(PGMDEV_FLASH_CANDIDATES::compared_bytes(record, device.answer.candidates.telling_count())) +
            " only";
    }
    print_sentence(line);
    if (!device.answer.fitting.empty()) {
        print_part("rather",
                   joined(device.answer.fitting) +
                       fmt::format(", of which this may be a variant that has no row: --as {}={} drives it so",
                                   position, device.answer.fitting.front()));
    }
}

}  // namespace

void print_identification(DWORD position, const FLASH_IDENTIFICATION& device, FLASH_IDENTIFIER& identifier) {
    if (!device.is_mapped()) {
        print_unmapped(position, device, identifier);
        return;
    }
    const PGMDEV_SFL_FLASH_INFO& record = identifier.record(device.index);
    if (!device.answer.contradictions.empty()) {
        print_contradictions(position, device, record);
    }
    print_sentence(fmt::format("Device {} ({}): {} {}, record {}", position, device.question.text,
                               record.manufacturer_name, record.device_name, device.index));
    if (device.answer.candidates.oddity().kind != PGMDEV_FLASH_ODDITY::KIND::NONE) {
        print_part("response", device.answer.candidates.oddity().text);
    }
    print_certainty(device, identifier);
    print_summary(record);
}

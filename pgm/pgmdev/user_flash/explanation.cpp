#include "pgmdev_user_flash.h"

#include <algorithm>
#include <new>

#include "user_flash/dialogue.h"
#include "user_flash/examination.h"
#include "user_flash/questions.h"
#include "user_flash/sealing.h"

// What is wrong with a user's flash description, in words.

namespace {

std::string undecodable(const std::string& encoded) {
    const std::size_t stranger = encoded.find_first_not_of(USER_FLASH_SYMBOLS);
    if (stranger != std::string::npos) {
        return "character " + std::to_string(stranger + 1) +
               " is none that encoded texts are made of: 0-9, A-Z, a-z, @ and -";
    }
    return "the text does not decompress, or not to at most 20 times its packed size: it is cut, or damaged";
}

/// The value of a member in decimal, as descriptions have it.
std::string value_of(const PGMDEV_SFL_FLASH_INFO& record, std::string_view name) {
    const auto* const member = std::find_if(PGMDEV_SFL_FLASH_MEMBERS.begin(), PGMDEV_SFL_FLASH_MEMBERS.end(),
                                            [&](const PGMDEV_SFL_FLASH_MEMBER& m) { return m.name == name; });
    return std::visit([&](auto field) { return pgmdev_cell(record.*field, PGMDEV_NUMBER_BASE::BASE_10); },
                      member->field);
}

/// Why the values are not those of a flash.
std::vector<std::string> value_faults(const USER_FLASH_EXAMINATION& examination) {
    std::vector<std::string> faults;
    const PGMDEV_SFL_FLASH_INFO& record = examination.record;
    if (!examination.has_all_values()) {
        const std::size_t missing = examination.values.size();
        faults.push_back("the body ends before value " + std::to_string(missing + 1) + ", " +
                         std::string(PGMDEV_SFL_FLASH_MEMBERS[missing].name) + ", and the '@' behind it");
    } else if (!examination.is_complete()) {
        const PGMDEV_SFL_FLASH_MEMBER& member = PGMDEV_SFL_FLASH_MEMBERS[examination.assigned];
        faults.push_back(std::string(member.name) + " is \"" + examination.values[examination.assigned] +
                         "\", expected " + std::string(accepted_user_flash_values(member)));
    } else {
        for (const auto& [member, found, expected] : PGMDEV_USER_FLASH::implausible(record)) {
            faults.push_back(std::string(member).append(" is ").append(found).append(", expected ").append(expected));
        }
        if (record.device_name.empty()) {
            faults.emplace_back("device_name is empty, which stands for no flash at all");
        }
    }
    return faults;
}

}  // namespace

PGMDEV_USER_FLASH PGMDEV_USER_FLASH::from_decoded(const std::string& text) {
    PGMDEV_USER_FLASH flash;
    USER_FLASH_EXAMINATION examination;
    examination.decoded.text = text;
    examine_user_flash(examination);
    if (!examination.has_pieces()) {
        flash.m_faults.emplace_back("the decoded text is not of the form body#password;");
        return flash;
    }
    flash.m_body = examination.pieces->body;
    flash.m_password = examination.pieces->password;
    flash.m_record = examination.record;
    flash.m_complete = examination.is_complete();
    flash.m_plausible = examination.plausible;
    flash.m_password_valid = is_user_flash_password(examination.pieces->body, examination.pieces->password);
    flash.m_faults = value_faults(examination);
    if (!flash.m_password_valid) {
        flash.m_faults.emplace_back(
            "the password does not fit: the body was changed, or signed by another version or build of the tool");
    }
    return flash;
}

PGMDEV_USER_FLASH PGMDEV_USER_FLASH::from_encoded(const std::string& encoded) {
    const USER_FLASH_CODING decoded = decode_user_flash(encoded);
    if (decoded.failure != nullptr) {
        PGMDEV_USER_FLASH flash;
        flash.m_faults.push_back(undecodable(encoded));
        return flash;
    }
    return from_decoded(decoded.text);
}

std::vector<PGMDEV_USER_FLASH> PGMDEV_USER_FLASH::all_from_encoded(const std::string& encoded) {
    std::vector<PGMDEV_USER_FLASH> all{from_encoded(encoded)};
    const std::string text = decode_user_flash(encoded).text;
    std::size_t begin = text.find(USER_FLASH_TEXT_END);
    while (begin != std::string::npos) {
        const std::size_t end = text.find(USER_FLASH_TEXT_END, ++begin);
        const std::string next = text.substr(begin, end == std::string::npos ? end : end - begin + 1);
        if (split_user_flash(next)) {
            all.push_back(from_decoded(next));
        }
        begin = end;
    }
    return all;
}

std::vector<PGMDEV_USER_FLASH::IMPLAUSIBLE_MEMBER> PGMDEV_USER_FLASH::implausible(const PGMDEV_SFL_FLASH_INFO& flash) {
    std::vector<IMPLAUSIBLE_MEMBER> members;
    for (const USER_FLASH_RULE& rule : user_flash_rules()) {
        if (!rule.holds(flash)) {
            members.push_back({std::string(rule.member), value_of(flash, rule.member), std::string(rule.expected)});
        }
    }
    return members;
}

std::string PGMDEV_USER_FLASH::define(std::istream& answers, std::ostream& prompts) {
    return define_user_flash(answers, prompts);
}

std::string PGMDEV_USER_FLASH::define(std::istream& answers, std::ostream& prompts,
                                      const std::function<bool(const REFUSED_ANSWER&)>& ask_again) {
    return define_user_flash(answers, prompts, ask_again);
}

std::string PGMDEV_USER_FLASH::encode(std::span<const PGMDEV_SFL_FLASH_INFO> flashes) {
    if (flashes.empty() || flashes.size() > MOST_FLASHES) {
        return {};
    }
    std::string text;
    for (const PGMDEV_SFL_FLASH_INFO& flash : flashes) {
        for (const PGMDEV_SFL_FLASH_MEMBER& member : PGMDEV_SFL_FLASH_MEMBERS) {
            const auto* name = std::get_if<std::string PGMDEV_SFL_FLASH_INFO::*>(&member.field);
            if (name != nullptr && tears_user_flash(member.question, flash.**name)) {
                return {};
            }
        }
        text += sealed_user_flash(user_flash_body(flash));
    }
    const USER_FLASH_CODING encoded = encode_checked_user_flash(text);
    if (encoded.lacks_memory) {  // of which "" would say that no text holds these flash devices
        throw std::bad_alloc();
    }
    return encoded.text;
}

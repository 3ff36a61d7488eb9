#include "pgmdev_user_flash.h"

#include <algorithm>

#include "user_flash/dialogue.h"
#include "user_flash/examination.h"

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
        for (const USER_FLASH_RULE& rule : user_flash_rules()) {
            if (!rule.holds(record)) {
                faults.push_back(std::string(rule.member) + " is " + value_of(record, rule.member) + ", expected " +
                                 std::string(rule.expected));
            }
        }
        if (record.device_name.empty()) {
            faults.emplace_back("device_name is empty, which stands for no flash at all");
        }
    }
    return faults;
}

}  // namespace

PGMDEV_USER_FLASH PGMDEV_USER_FLASH::from_encoded(const std::string& encoded) {
    PGMDEV_USER_FLASH flash;
    USER_FLASH_EXAMINATION examination;
    examination.decoded = decode_user_flash(encoded);
    if (examination.decoded.failure != nullptr) {
        flash.m_faults.push_back(undecodable(encoded));
        return flash;
    }
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
    flash.m_password_valid = examination.password_fits;
    flash.m_faults = value_faults(examination);
    if (!flash.m_password_valid) {
        flash.m_faults.emplace_back(
            "the password does not fit: the body was changed, or signed by another version or build of the tool");
    }
    return flash;
}

std::string PGMDEV_USER_FLASH::define(std::istream& answers, std::ostream& prompts) {
    return define_user_flash(answers, prompts);
}

#include "pgmdev_user_flash.h"

#include <algorithm>
#include <array>
#include <type_traits>

#include "gen.h"
#include "user_flash/codec.h"
#include "user_flash/dialogue.h"
#include "user_flash/text.h"

namespace {

std::string undecodable(const std::string& encoded) {
    const std::size_t stranger = encoded.find_first_not_of(USER_FLASH_SYMBOLS);
    if (stranger != std::string::npos) {
        return "character " + std::to_string(stranger + 1) +
               " is none that encoded texts are made of: 0-9, A-Z, a-z, @ and -";
    }
    return "the text does not decompress, or not to at most 20 times its packed size: it is cut, or damaged";
}

std::string value_of(const PGMDEV_SFL_FLASH_INFO& record, std::string_view name) {
    const auto member = std::find_if(PGMDEV_SFL_FLASH_MEMBERS.begin(), PGMDEV_SFL_FLASH_MEMBERS.end(),
                                     [&](const PGMDEV_SFL_FLASH_MEMBER& m) { return m.name == name; });
    return std::visit(
        [&](auto field) {
            const auto& value = record.*field;
            if constexpr (std::is_same_v<std::remove_cvref_t<decltype(value)>, std::string>) {
                return value;
            } else {
                return std::to_string(value);
            }
        },
        member->field);
}

}  // namespace

PGMDEV_USER_FLASH PGMDEV_USER_FLASH::from_encoded(const std::string& encoded) {
    PGMDEV_USER_FLASH flash;
    const USER_FLASH_CODING decoded = decode_user_flash(encoded);
    if (decoded.failure != nullptr) {
        flash.m_faults.push_back(undecodable(encoded));
        return flash;
    }
    const auto pieces = split_user_flash(decoded.text);
    if (!pieces || pieces->body.empty() || pieces->password.empty()) {
        flash.m_faults.emplace_back("the decoded text is not of the form body#password;");
        return flash;
    }
    flash.m_body = pieces->body;
    flash.m_password = pieces->password;
    flash.take_values();
    if (flash.m_complete) {
        flash.check_rules();
    }
    flash.m_password_valid = is_user_flash_password(flash.m_body, flash.m_password);
    if (!flash.m_password_valid) {
        flash.m_faults.emplace_back(
            "the password does not fit: the body was changed, or signed by another version or build of the tool");
    }
    return flash;
}

std::string PGMDEV_USER_FLASH::define(std::istream& answers, std::ostream& prompts) {
    return define_user_flash(answers, prompts);
}

void PGMDEV_USER_FLASH::take_values() {
    std::array<std::string, USER_FLASH_VALUES> values;
    QWORD position = 0;
    for (std::size_t i = 0; i < values.size(); ++i) {
        const auto value = next_user_flash_value(m_body, position);
        if (!value) {
            m_faults.push_back("the body ends before value " + std::to_string(i + 1) + ", " +
                               std::string(PGMDEV_SFL_FLASH_MEMBERS[i].name) + ", and the '@' behind it");
            return;
        }
        values[i] = gen_ascii_toupper(std::string(*value));
    }
    const std::size_t refused = assign_user_flash(values, m_record);
    m_complete = refused == values.size();
    if (!m_complete) {
        const PGMDEV_SFL_FLASH_MEMBER& member = PGMDEV_SFL_FLASH_MEMBERS[refused];
        m_faults.push_back(std::string(member.name) + " is \"" + values[refused] + "\", expected " +
                           std::string(accepted_user_flash_values(member)));
    }
}

void PGMDEV_USER_FLASH::check_rules() {
    m_plausible = is_plausible_user_flash(m_record);
    for (const USER_FLASH_RULE& rule : user_flash_rules()) {
        if (!rule.holds(m_record)) {
            m_faults.push_back(std::string(rule.member) + " is " + value_of(m_record, rule.member) + ", expected " +
                               std::string(rule.expected));
        }
    }
    if (m_record.device_name.empty()) {
        m_faults.emplace_back("device_name is empty, which stands for no flash at all");
    }
}

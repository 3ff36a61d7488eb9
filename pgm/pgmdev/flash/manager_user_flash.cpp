#include <iostream>
#include <span>
#include <type_traits>

#include "cfg.h"
#include "gen.h"
#include "msg.h"
#include "pgmdev_flash_manager.h"
#include "pgmdev_user_flash.h"
#include "printing.h"
#include "report.h"
#include "user_flash/codec.h"
#include "user_flash/dialogue.h"
#include "user_flash/examination.h"
#include "user_flash/text.h"

// The user's own flash: from the configuration into the manager.

namespace {

constexpr int USER_FLASH_DEBUG_LEVEL = 2;

/// The text of a coding, whose failure goes to the user.
std::string printed(USER_FLASH_CODING coding) {
    if (coding.failure != nullptr) {
        print(std::cout, {coding.failure});
    }
    return std::move(coding.text);
}

/// What an examination found, up to where it failed, a line each. The password is looked at behind it.
std::string trace_of(const USER_FLASH_EXAMINATION& examination) {
    std::string lines = examination.decoded.text + "\n";
    if (examination.pieces) {
        lines.append(examination.pieces->body).append("\n").append(examination.pieces->password).append("\n");
    }
    if (!examination.has_pieces()) {
        return lines;
    }
    for (std::size_t i = 0; i < examination.values.size(); ++i) {
        lines += "Status " + std::to_string(i) + " : 1\n";
    }
    if (!examination.has_all_values()) {
        return lines + "Status " + std::to_string(examination.values.size()) + " : 0\n";
    }
    return lines +
           (examination.is_complete() && !examination.plausible ? "Fail to check the validity of the INI\n" : "");
}

}  // namespace

std::string PGMDEV_FLASH_MANAGER::encode_ini(std::string text) {
    return printed(encode_user_flash(text));
}

std::string PGMDEV_FLASH_MANAGER::decode_ini(std::string encoded) {
    return printed(decode_user_flash(encoded));
}

std::string PGMDEV_FLASH_MANAGER::gen_ini_password(std::string text) {
    return user_flash_password(text);
}

bool PGMDEV_FLASH_MANAGER::cmp_ini_password(std::string text, std::string password) {
    return is_user_flash_password(text, password);
}

void PGMDEV_FLASH_MANAGER::parse_ext_flash_info() {
    if (!accept_ext_flash_info()) {
        null_info_database(&m_ini_flash_info);
    } else if (m_print_on_load != 0) {
        print_ini_database();
    }
}

/// Whether the configuration has a description that decodes, is plausible and was signed by this build; then it is in
/// m_ini_flash_info. Only the debug switch makes it say more than what decode_ini says.
bool PGMDEV_FLASH_MANAGER::accept_ext_flash_info() {
    const std::string key = PGMDEV_USER_FLASH::CONFIGURATION_KEY;
    const std::string encoded = cfg_get_value(key);
    if (encoded.empty()) {
        return false;
    }
    USER_FLASH_EXAMINATION examination;
    examination.decoded.text = decode_ini(encoded);
    if (examination.decoded.text.empty()) {
        return false;
    }
    const bool debug = cfg_is_on(key + "_DEBUG", false) != 0;
    examine_user_flash(examination);
    if (debug) {
        print(std::cout, {trace_of(examination)});
    }
    if (!examination.plausible) {
        return false;
    }
    if (!cmp_ini_password(std::string(examination.pieces->body), std::string(examination.pieces->password))) {
        if (debug) {
            print(std::cout, {"Fail to compare INI password\n"});
        }
        return false;
    }
    m_ini_flash_info = examination.record;
    return true;
}

bool PGMDEV_FLASH_MANAGER::get_string_from_ini(std::string text, std::string* value, QWORD& position) {
    const auto found = next_user_flash_value(text, position);
    *value = found ? gen_ascii_toupper(std::string(*found)) : std::string();
    return found.has_value();
}

bool PGMDEV_FLASH_MANAGER::assign_ini(std::string* values) {
    const std::span<const std::string, TOTAL_DATABASE_MEMBER> all(values, TOTAL_DATABASE_MEMBER);
    return assign_user_flash(all, m_ini_flash_info) == all.size();
}

// A host may tell messages apart by their formats, so each member has its own.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
void PGMDEV_FLASH_MANAGER::print_ini_database() {
    for (const PGMDEV_SFL_FLASH_MEMBER& member : PGMDEV_SFL_FLASH_MEMBERS) {
        const std::string format = "3rd party SPI support - " + std::string(member.name) + " : ";
        std::visit(
            [&](auto field) {
                const auto& value = m_ini_flash_info.*field;
                if constexpr (std::is_same_v<std::remove_cvref_t<decltype(value)>, std::string>) {
                    msg_local_vdebug(PGMDEV_MODULE, USER_FLASH_DEBUG_LEVEL, (format + "%s").c_str(), value.c_str());
                } else {
                    msg_local_vdebug(PGMDEV_MODULE, USER_FLASH_DEBUG_LEVEL, (format + "%X").c_str(),
                                     static_cast<unsigned>(value));
                }
            },
            member.field);
    }
}
#pragma GCC diagnostic pop

void PGMDEV_FLASH_MANAGER::gen_flash_ini() {
    define_user_flash(std::cin, std::cout);
}

bool PGMDEV_FLASH_MANAGER::prompt_flash_info(std::string& body) {
    return ask_user_flash(std::cin, std::cout, body);
}

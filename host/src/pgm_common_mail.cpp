#include <cstdint>

#include "cfg.h"
#include "fio.h"
#include "gen.h"
#include "pgm_common.h"
#include "utf8_path.h"

namespace {

constexpr const char* OUTBOX_KEY = "TESSARY_OUTBOX_DIR";
constexpr const char* OUTBOX_NAME = "/outbox";

std::string outbox_directory() {
    const std::string configured = cfg_get_value(OUTBOX_KEY);
    return configured.empty() ? gen_get_tessary_path() + OUTBOX_NAME : configured;
}

std::string message_of(const std::string& title, const std::string& text, const std::vector<int>& recipients) {
    std::string message = "To: ";
    for (std::size_t i = 0; i < recipients.size(); ++i) {
        message += (i == 0 ? "" : ", ") + std::to_string(recipients[i]);
    }
    return message + "\nSubject: " + title + "\n\n" + text;
}

/// "message-" and the FNV-1a hash of the message in hexadecimal.
std::string file_name_of(const std::string& message) {
    std::uint64_t hash = 14695981039346656037U;
    for (const char c : message) {
        hash = (hash ^ static_cast<unsigned char>(c)) * 1099511628211U;
    }
    constexpr const char* DIGITS = "0123456789abcdef";
    std::string name = "message-";
    for (int shift = 60; shift >= 0; shift -= 4) {
        name += DIGITS[hash >> shift & 0xF];
    }
    return name + ".txt";
}

}  // namespace

bool PGM_COMMON::send_auto_email_file(const std::string& title, const std::string& text,
                                      const std::vector<int>& recipients) {
    const std::filesystem::path directory = fio_get_unc_full_path(outbox_directory());
    std::error_code error;
    std::filesystem::create_directories(directory, error);
    if (error) {
        return false;
    }
    const std::string message = message_of(title, text, recipients);
    FIO_REPLACEMENT file(utf8_from_path(directory / file_name_of(message)));
    return file.write({reinterpret_cast<const BYTE*>(message.data()), message.size()}) && file.commit();
}

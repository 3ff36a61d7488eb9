#include <cstdint>

#include "cfg.h"
#include "file_kind.h"
#include "fio.h"
#include "gen.h"
#include "pgm_common.h"
#include "standard_places.h"
#include "utf8_path.h"

namespace {

constexpr const char* OUTBOX_KEY = "TESSARY_OUTBOX_DIR";
constexpr const char* OUTBOX_NAME = "outbox";

/// Creates the directory and what is missing above it.
bool has_made(const std::string& directory) {
    std::error_code ignored;  // it may be there: made by another process, or long ago
    make_directories(fio_get_unc_full_path(directory), ignored);
    FIO_STATUS made;
    return FIO_FILE_SYSTEM::status(directory.c_str(), &made) && !made.regular;
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

std::string PGM_COMMON::get_outbox_path() {
    std::string configured = cfg_get_value(OUTBOX_KEY);
    if (!configured.empty()) {
        return configured;
    }
    const std::filesystem::path installation = path_from_utf8(gen_get_tessary_path());
    const std::filesystem::path directory =
        is_writable_directory(installation / OUTBOX_NAME) ? installation : writable_place(installation, OUTBOX_NAME);
    return utf8_from_path(directory / OUTBOX_NAME);
}

bool PGM_COMMON::send_auto_email_file(const std::string& title, const std::string& text,
                                      const std::vector<int>& recipients) {
    const std::string directory = FIO_PATH(get_outbox_path()).fullpath();
    if (!has_made(directory)) {
        return false;
    }
    const std::string message = message_of(title, text, recipients);
    FIO_REPLACEMENT file(directory + "/" + file_name_of(message));
    return file.write({reinterpret_cast<const BYTE*>(message.data()), message.size()}) && file.commit();
}

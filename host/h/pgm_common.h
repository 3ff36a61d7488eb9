#pragma once

/// \file
/// The programmer's common library.

#include <string>
#include <vector>

#include "host_export.h"
#include "host_types.h"

class HOST_EXPORT PGM_COMMON {
public:
    /// The number that `text` spells: decimal digits, or hexadecimal digits after "0x" or "0X" when `allow_hex`, up to
    /// 0xFFFFFFFF. No sign, no blanks, nothing behind the number. An empty text is 0, unless `no_empty` makes it
    /// invalid.
    ///
    /// An invalid text gives 0; `ok`, when given, says which it was, and without `ok` the internal error
    /// "Invalid string to integer conversion" is reported. `value`, when given, receives the result too.
    static DWORD convert_string_to_dword(const std::string& text, bool no_empty, bool* ok, DWORD* value,
                                         bool allow_hex);

    /// Sends a message to the people behind recipient codes; false when that failed.
    ///
    /// The reference host has no network. It writes the message as a file into an outbox, from which the site may send
    /// it: the directory in the configuration value "TESSARY_OUTBOX_DIR", otherwise "outbox" in the installation
    /// directory, created when it does not exist. The file is text: "To: " and the codes, "Subject: " and the title, an
    /// empty line, the message. Its name depends on what it says, so that a message that is repeated replaces itself.
    static bool send_auto_email_file(const std::string& title, const std::string& text,
                                     const std::vector<int>& recipients);
};

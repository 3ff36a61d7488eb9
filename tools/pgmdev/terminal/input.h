#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>

#include "pgmdev_types.h"
#include "utf_8_input.h"

/// An identification response.
struct ID_RESPONSE {
    std::array<BYTE, 256> bytes{};  ///< padded with zeros to all the bytes that a record may name
    DWORD count = 0;                ///< of the bytes that were given

    BYTE* data() { return bytes.data(); }
    const BYTE* data() const { return bytes.data(); }
};

/// The bytes of a response: see bytes_of_response(). What is none, and more bytes than a response has, throws USAGE_ERROR.
ID_RESPONSE parse_id_response(const std::string& text);

/// The number of 32 bits that `text` spells, in decimal or after 0x. Anything else throws USAGE_ERROR, which says that it
/// is not `what`.
DWORD parse_dword(const std::string& text, std::string_view what);

/// The flag that `text` spells: 0, 1, false or true, in any case. Nothing when it is anything else.
std::optional<bool> flag_named(const std::string& text);

/// The lines of standard input, in UTF-8. A byte-order mark before the first one is no part of it.
class INPUT_LINES {
public:
    INPUT_LINES();

    /// Reads the next line; false at the end. An input that cannot be read, and a line that is longer than any question,
    /// throw COMMAND_FAILURE.
    bool next(std::string& line);

private:
    UTF_8_INPUT m_input;
    bool m_is_first = true;
};

/// Throws COMMAND_FAILURE when standard input has ended because it could not be read.
void require_readable_input();

#pragma once

#include <array>
#include <functional>
#include <string>
#include <string_view>

#include "pgmdev_types.h"

/// An identification response.
struct ID_RESPONSE {
    std::array<BYTE, 256> bytes{};  ///< padded with zeros to all the bytes that a record may name
    DWORD count = 0;                ///< of the bytes that were given

    BYTE* data() { return bytes.data(); }
    const BYTE* data() const { return bytes.data(); }
};

/// The bytes that `text` spells: pairs of hexadecimal digits, which blanks, ':' and '-' may set apart and "0x" may
/// precede. Anything else, and more bytes than a response has, throws USAGE_ERROR.
ID_RESPONSE parse_id_response(const std::string& text);

/// The number of 32 bits that `text` spells, in decimal or after 0x. Anything else throws USAGE_ERROR, which says that it
/// is not `what`.
DWORD parse_dword(const std::string& text, std::string_view what);

/// Reads the next line of standard input; false at its end. An input that cannot be read, and a line that is longer than
/// any question, throw COMMAND_FAILURE.
bool read_input_line(std::string& line);

/// Throws COMMAND_FAILURE when standard input has ended because it could not be read.
void require_readable_input();

/// Calls `use` for each line of standard input that holds more than white space, without the white space around it.
void for_each_input_line(const std::function<void(const std::string&)>& use);

/// Calls `use` for the argument, or for each line of standard input, as above, when the argument is "-". `batch` says
/// which.
void for_each_item(const std::string& argument, const std::function<void(const std::string& item, bool batch)>& use);

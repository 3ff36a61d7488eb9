#include "flash/sfdp_dump.h"

#include <fmt/core.h>

#include <algorithm>
#include <array>
#include <iostream>
#include <optional>
#include <string_view>

#include "file_reader.h"
#include "files/inspection.h"
#include "fio.h"
#include "flash/hex_text.h"
#include "flash/printed_dump.h"
#include "terminal/command.h"
#include "terminal/failure.h"
#include "terminal/input.h"
#include "text_lines.h"
#include "utf_8_input.h"

namespace {

/// No area has a thousandth part of it, as bytes or as text.
constexpr std::size_t LARGEST_SFDP_DUMP = std::size_t{4} << 20;

/// The bytes of a text of digits; nothing when it is none.
std::optional<std::vector<BYTE>> bytes_of_digits(const std::string& text) {
    auto bytes = bytes_of_hex_text(text, LARGEST_SFDP_DUMP);
    return bytes && bytes->empty() ? std::nullopt : std::move(bytes);
}

/// The bytes of a text of digits, also of one that only the signature tells to be read like this; nothing when it is none.
std::optional<std::vector<BYTE>> bytes_of_text(const std::string& text) {
    auto bytes = bytes_of_digits(text);
    if (!bytes || !begins_as_sfdp(*bytes)) {
        if (auto printed = bytes_of_digits(plain_dump_of(text)); printed && begins_as_sfdp(*printed)) {
            return printed;
        }
    }
    return bytes;
}

/// What was read: bytes as they are, unless they are a text of digits.
std::vector<BYTE> bytes_of_contents(const std::string& contents) {
    const auto text = contents.starts_with(SFDP_SIGNATURE) ? std::nullopt : as_utf_8(contents);
    if (text) {
        if (auto bytes = bytes_of_text(std::string(without_byte_order_mark(*text)))) {
            return std::move(*bytes);
        }
    }
    return {contents.begin(), contents.end()};
}

std::string standard_input() {
    std::string contents;
    std::array<char, 4096> chunk{};
    do {
        std::cin.read(chunk.data(), chunk.size());
        contents.append(chunk.data(), static_cast<std::size_t>(std::cin.gcount()));
    } while (std::cin.good() && contents.size() <= LARGEST_SFDP_DUMP);
    require_readable_input();
    return contents;
}

/// What a pipe or device gives, to its end.
std::optional<std::string> stream_contents(const std::string& stream) {
    std::string contents;
    const READ_RESULT result = read_whole_file(fio_get_unc_full_path(FIO_PATH(stream).fullpath()), LARGEST_SFDP_DUMP,
                                               FILE_KINDS::STREAMS_TOO, contents);
    return result == READ_RESULT::READ ? std::optional(std::move(contents)) : std::nullopt;
}

/// What was not taken for a text of digits, but may have been meant as one.
bool begins_as_digits(std::span<const BYTE> bytes) {
    const auto beginning = bytes.first(std::min(bytes.size(), SFDP_SIGNATURE.size()));
    return !beginning.empty() && std::all_of(beginning.begin(), beginning.end(), [](BYTE byte) {
        return (byte >= '0' && byte <= '9') || (byte >= 'A' && byte <= 'F') || (byte >= 'a' && byte <= 'f');
    });
}

COMMAND_FAILURE unreadable_dump(const std::string& path, const std::string& why) {
    return COMMAND_FAILURE({FAILURE_CODE::FILE_UNREADABLE,
                            "the dump cannot be read: " + why,
                            path,
                            {},
                            "name a file that exists and that you may read",
                            {}},
                           EXIT_USAGE);
}

}  // namespace

std::vector<BYTE> sfdp_bytes(const std::string& argument) {
    std::string contents;
    if (argument == "-") {
        contents = standard_input();
    } else if (is_stream(argument)) {
        auto given = stream_contents(argument);
        if (!given) {
            throw unreadable_dump(argument, "it is far larger than any SFDP area, or ends in an error");
        }
        contents = std::move(*given);
    } else {
        INSPECTED_FILE file = inspect_file(argument, LARGEST_SFDP_DUMP + 1);
        if (!file.obstacle.empty()) {
            if (auto bytes = bytes_of_digits(argument)) {  // too long for the name of a file, for instance
                return std::move(*bytes);
            }
        }
        if (file.missing) {
            throw USAGE_ERROR(fmt::format("\"{}\" is neither a file nor pairs of hexadecimal digits", argument));
        }
        if (!file.obstacle.empty()) {
            throw unreadable_dump(argument, file.obstacle);
        }
        contents = std::move(file.beginning);
    }
    if (contents.size() > LARGEST_SFDP_DUMP) {
        throw unreadable_dump(argument, "it is far larger than any SFDP area");
    }
    return bytes_of_contents(contents);
}

PGMDEV_FLASH_SFDP read_sfdp(std::span<const BYTE> bytes, const std::string& path) {
    PGMDEV_FLASH_SFDP sfdp = PGMDEV_FLASH_SFDP::from_bytes(bytes);
    if (sfdp.refusal()) {
        const char* const advice = begins_as_digits(bytes)
                                       ? "a text of hexadecimal digits is read when no line of it is missing or of "
                                         "another form: print it as xxd does"
                                       : "read the area again from address 0, to the end of its last table";
        throw COMMAND_FAILURE({FAILURE_CODE::SFDP_REFUSED,
                               "the SFDP dump is refused: " + PGMDEV_FLASH_SFDP::describe(*sfdp.refusal()),
                               path,
                               {},
                               advice,
                               {}});
    }
    return sfdp;
}

PGMDEV_FLASH_SFDP sfdp_of(const std::string& argument) {
    return read_sfdp(sfdp_bytes(argument), argument == "-" || bytes_of_digits(argument) ? "" : argument);
}

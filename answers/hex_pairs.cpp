#include "hex_pairs.h"

#include <charconv>

std::optional<std::vector<BYTE>> bytes_of_hex_pairs(std::string_view text, std::string_view between) {
    std::vector<BYTE> bytes;
    while (!text.empty()) {
        if (between.find(text.front()) != std::string_view::npos) {
            text.remove_prefix(1);
            continue;
        }
        if (text.starts_with("0x") || text.starts_with("0X")) {
            text.remove_prefix(2);
        }
        const std::string_view pair = text.substr(0, 2);
        if (pair.size() != 2 || pair.find_first_not_of(HEX_DIGITS) != std::string_view::npos) {
            return std::nullopt;
        }
        BYTE byte = 0;
        std::from_chars(pair.data(), pair.data() + pair.size(), byte, 16);
        bytes.push_back(byte);
        text.remove_prefix(pair.size());
    }
    return bytes;
}

std::optional<std::vector<BYTE>> bytes_of_response(std::string_view text) {
    return bytes_of_hex_pairs(text, " :-");
}

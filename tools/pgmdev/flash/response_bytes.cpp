#include "flash/response_bytes.h"

#include <algorithm>
#include <cctype>

#include "terminal/input.h"

std::vector<BYTE> response_bytes(const std::string& text) {
    const ID_RESPONSE padded = parse_id_response(text);
    std::size_t digits = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const bool is_prefix = text[i] == '0' && i + 1 < text.size() && (text[i + 1] == 'x' || text[i + 1] == 'X');
        digits += !is_prefix && std::isxdigit(static_cast<unsigned char>(text[i])) != 0 ? 1U : 0U;
    }
    return {padded.begin(), padded.begin() + static_cast<std::ptrdiff_t>(digits / 2)};
}

MAPPED_FLASH map_response(PGMDEV_FLASH_MANAGER& manager, const std::vector<BYTE>& response, bool silicon) {
    ID_RESPONSE padded{};
    std::copy_n(response.begin(), std::min(response.size(), padded.size()), padded.begin());
    if (response.empty() || manager.get_flash_count() == 0 ||
        !manager.flash_id_database_mapping(silicon, 0, padded.data())) {
        return {};
    }
    const DWORD index = manager.get_flash_mapping_index(0, false);
    return {index, manager.get_flash_database() + index};
}

#include "flash_database.h"

#include <algorithm>

FLASH_DATABASE::FLASH_DATABASE(const std::string& pcf_file)
    : PGMDEV_FLASH_MANAGER(false, 1, true, false), m_notes(PGMDEV_FLASH_NOTES::beside_database(pcf_file)) {
    initialize_flash_database(FIO_PATH(pcf_file));
    m_index.emplace(m_flash_database, m_flash_count);
}

PGMDEV_FLASH_ANSWER FLASH_DATABASE::answer(const std::string& response, bool silicon_id) const {
    constexpr std::size_t MOST_BYTES = 256;
    const auto* bytes = reinterpret_cast<const BYTE*>(response.data());
    return {*m_index, records(), silicon_id, bytes, static_cast<DWORD>(std::min(response.size(), MOST_BYTES)), m_notes};
}

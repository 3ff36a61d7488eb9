#include "flash_database.h"

#include <algorithm>
#include <array>

FLASH_DATABASE::FLASH_DATABASE(const std::string& pcf_file)
    : PGMDEV_FLASH_MANAGER(false, 1, true, false), m_notes(PGMDEV_FLASH_NOTES::beside_database(pcf_file)) {
    initialize_flash_database(FIO_PATH(pcf_file));
    m_index.emplace(m_flash_database, m_flash_count);
}

FLASH_ANSWER FLASH_DATABASE::answer(const std::string& response, bool silicon_id) const {
    std::array<BYTE, 256> bytes{};
    const auto given = static_cast<DWORD>(std::min(response.size(), bytes.size()));
    std::copy_n(response.begin(), given, bytes.begin());
    FLASH_ANSWER answer{
        {*m_index, m_flash_database, m_flash_count, silicon_id, bytes.data(), given, &m_notes}, {}, {}, {}};
    if (silicon_id) {
        return answer;  // what is known besides is about identifications
    }
    const DWORD telling = answer.candidates.telling_count();
    const DWORD taken = answer.candidates.taken();
    answer.ambiguities = m_notes.ambiguities_of(bytes.data(), telling);
    if (taken != INVALID_DWORD) {
        answer.contradictions = m_notes.contradictions(m_flash_database[taken].device_name, bytes.data(), telling);
    }
    if (!answer.contradictions.empty()) {
        answer.fitting = m_notes.devices_of(bytes.data(), telling);
    }
    return answer;
}

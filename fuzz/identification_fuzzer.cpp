#include "flash/hex_text.h"
#include "input.h"
#include "pgmdev_flash_candidates.h"
#include "pgmdev_flash_notes.h"
#include "pgmdev_flash_table.h"
#include "reports.h"

// Any bytes as the answer of a flash to an identification, and any text as such bytes. The index finds the same record as
// the walk. Most ask a table with a few rows of each kind, others the one that is shipped.

namespace {

class TABLE {
public:
    explicit TABLE(const std::string& source)
        : m_table(PGMDEV_FLASH_TABLE::from_source(FIO_PATH(source))),
          m_notes(PGMDEV_FLASH_NOTES::beside_source(source)),
          m_index(m_table.records().data(), count()) {}

    void identify(bool silicon_id, const std::vector<BYTE>& response, DWORD given) const {
        const PGMDEV_FLASH_CANDIDATES candidates(m_table.records().data(), count(), silicon_id, response.data(), given,
                                                 &m_notes);
        if (m_index.taken(silicon_id, response.data(), given) != candidates.taken()) {
            __builtin_trap();
        }
    }

private:
    DWORD count() const { return static_cast<DWORD>(m_table.records().size()); }

    PGMDEV_FLASH_TABLE m_table;
    PGMDEV_FLASH_NOTES m_notes;
    PGMDEV_FLASH_INDEX m_index;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const TABLE some(FUZZ_INSTALLATION_DIR "/tables/pgm_flash.csv");
    static const TABLE shipped(FUZZ_DATA_DIR "/flash/pgm_flash.csv");
    constexpr std::size_t MOST = 256;
    constexpr BYTE SHIPPED = 0xF0;  // and above
    CHOICES choices(data, size);
    const BYTE choice = choices.byte();
    const std::string rest = choices.rest();
    const auto bytes = bytes_of_hex_text(rest, MOST);
    std::vector<BYTE> response = bytes ? *bytes : std::vector<BYTE>(rest.begin(), rest.end());
    response.resize(std::min(response.size(), MOST));
    const auto given = static_cast<DWORD>(response.size());
    response.resize(MOST);  // as the manager is given it
    const TABLE& table = choice >= SHIPPED ? shipped : some;
    up_to_a_report([&] { table.identify((choice & 1U) != 0, response, given); });
    return 0;
}

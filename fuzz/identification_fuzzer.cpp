#include "flash/hex_text.h"
#include "input.h"
#include "pgmdev_flash_candidates.h"
#include "pgmdev_flash_notes.h"
#include "pgmdev_flash_table.h"
#include "reports.h"

// Any bytes as the answer of a flash to an identification, and any text as such bytes. The index finds the same record as
// the walk.

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const std::string source = FUZZ_DATA_DIR "/flash/pgm_flash.csv";
    static const PGMDEV_FLASH_TABLE table = PGMDEV_FLASH_TABLE::from_source(FIO_PATH(source));
    static const PGMDEV_FLASH_NOTES notes = PGMDEV_FLASH_NOTES::beside_source(source);
    static const PGMDEV_FLASH_INDEX index(table.records().data(), static_cast<DWORD>(table.records().size()));
    constexpr std::size_t MOST = 256;
    CHOICES choices(data, size);
    const bool silicon_id = choices.flag();
    const std::string rest = choices.rest();
    const auto bytes = bytes_of_hex_text(rest, MOST);
    std::vector<BYTE> response = bytes ? *bytes : std::vector<BYTE>(rest.begin(), rest.end());
    response.resize(std::min(response.size(), MOST));
    const auto given = static_cast<DWORD>(response.size());
    response.resize(MOST);  // as the manager is given it
    up_to_a_report([&] {
        const PGMDEV_FLASH_CANDIDATES candidates(table.records().data(), static_cast<DWORD>(table.records().size()),
                                                 silicon_id, response.data(), given, &notes);
        if (index.taken(silicon_id, response.data(), given) != candidates.taken()) {
            __builtin_trap();
        }
    });
    return 0;
}

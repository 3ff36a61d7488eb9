#include "flash/aliases.h"
#include "flash/database.h"
#include "flash/evidence.h"
#include "input.h"
#include "pgmdev_flash_notes.h"
#include "pgmdev_flash_table.h"
#include "reports.h"
#include "scratch_files.h"

// Any texts as the notes beside a flash table: ambiguities, identifications, aliases, sources, chips that are left out.

namespace {

/// Those of a few rows of each kind.
const std::vector<PGMDEV_SFL_FLASH_INFO>& records() {
    static const PGMDEV_FLASH_TABLE table =
        PGMDEV_FLASH_TABLE::from_source(FIO_PATH(FUZZ_INSTALLATION_DIR "/tables/pgm_flash.csv"));
    return table.records();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::vector<std::string> texts = sections_of(text_of(data, size), 5);
    const char* const names[] = {"ambiguities.csv", "identifications.csv", "aliases.csv", "sources.csv",
                                 "left_out.csv"};
    for (std::size_t i = 0; i < texts.size(); ++i) {
        scratch_files().write(names[i], texts[i]);
    }
    const std::string table = scratch_files().path("pgm_flash.csv");
    up_to_a_report([&] {
        const PGMDEV_FLASH_NOTES notes = PGMDEV_FLASH_NOTES::beside_source(table);
        notes.faults_with(records());
        const std::vector<BYTE> response{0xEF, 0x40, 0x17};
        notes.ambiguities_of(response.data(), static_cast<DWORD>(response.size()));
        notes.contradictions(records().front().device_name, response.data(), static_cast<DWORD>(response.size()));
        flash_alias_faults(table, records());
        left_out_flash_faults(table, records());
        const FLASH_EVIDENCE evidence(read_flash_list(scratch_files().path("sources.csv")));
        support_of(evidence, records());
        evidence.of(records().front());
    });
    return 0;
}

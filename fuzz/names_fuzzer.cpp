#include "names/spellings.h"

#include "input.h"
#include "pgmdev_device_grammar_mgr.h"
#include "pgmdev_mgr.h"
#include "pgmdev_part_index.h"
#include "reports.h"

// Any text as the name of a device or part: every spelling of it, and every question about it.

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string name = text_of(data, size);
    up_to_a_report([&] { spellings_of(name); });
    up_to_a_report([&] { PGMDEV_MGR::get_opn_hash(name); });
    up_to_a_report([&] { PGMDEV_MGR::get_opn_enum(name); });
    up_to_a_report([&] { PGMDEV_MGR::get_part_name_from_dev(name); });
    up_to_a_report([&] {
        static const PGMDEV_PART_INDEX index;
        index.get_part_name_from_pcf(name);
        index.get_possible_full_name(name);
    });
    up_to_a_report([&] {
        for (DWORD type = 0; type < PGM_ENUM_TYPE_MAX; ++type) {
            DWORD value = 0;
            PGMDEV_MGR::pgm_check_type_name_supported(static_cast<PGM_ENUM_TYPE>(type), name, &value);
        }
    });
    return 0;
}

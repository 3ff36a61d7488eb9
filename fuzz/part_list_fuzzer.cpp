#include "gen.h"
#include "input.h"
#include "profiles/part_list.h"
#include "reports.h"
#include "scratch_files.h"

// Any text as the part list of the installation.

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    scratch_files().write("h/pgm_parts.txt", text_of(data, size));
    gen_set_tessary_path(scratch_files().directory());
    up_to_a_report([] {
        std::vector<PGMDEV_PGM_PART> parts;
        read_part_list(parts);
    });
    return 0;
}

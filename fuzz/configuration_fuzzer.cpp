#include "command.h"
#include "configuration/saving.h"
#include "configuration/warnings.h"
#include "configuration_lines.h"
#include "gen.h"
#include "input.h"
#include "terminal/failure.h"

// Any text as a configuration file: read, warned of, and changed by a line.

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text = text_of(data, size);
    working_directory();
    gen_set_device_db_fullpath(FUZZ_DEVICES_DIR);
    scratch_files().write("inner/tessary.conf", text);
    CONFIGURATION_VALUES values;
    read_configuration_lines(text, values);
    try {
        warn_of_configuration();
        save_setting("PGM_ALLOW_ANYTHING", "on");
    } catch (const COMMAND_FAILURE&) {
        // such as for a file that is too large
    }
    return 0;
}

#include <sstream>

#include "generator.h"
#include "input.h"
#include "scratch_files.h"

// Any texts as the tables of boot flash.

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::vector<std::string> texts = sections_of(text_of(data, size), 2);
    scratch_files().write("hps/nand.csv", texts[0]);
    scratch_files().write("hps/spi.csv", texts[1]);
    std::ostringstream output;
    std::ostringstream errors;
    run_generator({"--check-hps", scratch_files().path("hps")}, output, errors);
    return 0;
}

#include "catalog.h"
#include "data_set.h"
#include "generator.h"
#include "grammar.h"
#include "input.h"
#include "scratch_files.h"

#include <sstream>

// Any texts as the files of a catalog: checked, and made into data when they are without fault.

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::vector<std::string> texts = sections_of(text_of(data, size), 5);
    const char* const names[] = {"families.txt", "packages.txt", "grades.txt", "devices.txt", "ordering-codes.txt"};
    for (std::size_t i = 0; i < texts.size(); ++i) {
        scratch_files().write(std::string("catalog/") + names[i], texts[i]);
    }
    const std::string catalog = scratch_files().path("catalog");
    std::ostringstream output;
    std::ostringstream errors;
    if (run_generator({"--check", catalog}, output, errors) == GENERATOR_DONE) {
        const std::string out = scratch_files().path("out");
        run_generator({catalog, out + "/data.cpp", out + "/host.cpp", out + "/parts.txt"}, output, errors);
    }
    return 0;
}

#include "faults/every_fault.h"
#include "tools/small_catalog.h"

// The generator on a system that fails.

namespace {

TEST(GeneratorFaults, ACatalogIsReadWholeOrRefused) {
    const SMALL_CATALOG catalog;
    const std::string directory = catalog.directory();
    const std::string whole = run({"--check", directory}).output;
    ASSERT_NE(whole, "");
    std::string told;
    int result = GENERATOR_DONE;
    const std::vector<std::string> arguments{"--check", directory};
    with_each_allocation_failing([&] { told.clear(); },
                                 [&] {
                                     std::ostringstream output;
                                     std::ostringstream errors;
                                     result = GENERATOR_FAILED;
                                     result = run_generator(arguments, output, errors);
                                     told = result == GENERATOR_DONE && output.good() ? output.str() : "";
                                 },
                                 [&](bool ended) { EXPECT_TRUE(!ended || told == whole || told.empty()) << told; });
    for (const int error : {EIO, EMFILE, EINTR}) {
        with_each_call_failing<int>(
            error, [] {}, [&] { return run(arguments).result; },
            [](int code, const char* call) { EXPECT_TRUE(*call != '\0' || code == GENERATOR_DONE); });
    }
}

}  // namespace

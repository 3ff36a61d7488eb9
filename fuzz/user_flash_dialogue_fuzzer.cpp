#include <algorithm>
#include <sstream>

#include "input.h"
#include "pgmdev_user_flash.h"
#include "reports.h"

// Any text as the answers of the dialogue about a user's flash; what it makes is taken.

namespace {

/// The largest protection divisor that the dialogue takes is one more than a description may have.
bool is_known(const std::string& fault) {
    return fault.starts_with("protection_division is 32,");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    CHOICES choices(data, size);
    const bool again = choices.flag();
    std::istringstream answers(choices.rest());
    up_to_a_report([&] {
        std::ostringstream prompts;
        const std::string encoded = PGMDEV_USER_FLASH::define(
            answers, prompts, [again](const PGMDEV_USER_FLASH::REFUSED_ANSWER&) { return again; });
        if (encoded.empty()) {
            return;
        }
        const PGMDEV_USER_FLASH made = PGMDEV_USER_FLASH::from_encoded(encoded);
        if (!std::all_of(made.faults().begin(), made.faults().end(), is_known)) {
            __builtin_trap();
        }
    });
    return 0;
}

#include "cfg.h"
#include "input.h"
#include "pgmdev_flash_manager.h"
#include "pgmdev_user_flash.h"
#include "reports.h"
#include "user_flash/sealing.h"

// Any text as the description of a user's flash: as it is, or, every other one, behind the coding and with the password
// that this build would give it, so that what it says is reached.

namespace {

class LOADER : public PGMDEV_FLASH_MANAGER {
public:
    LOADER() : PGMDEV_FLASH_MANAGER(false, 0, true, false) {}

    using PGMDEV_FLASH_MANAGER::parse_ext_flash_info;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    CHOICES choices(data, size);
    const bool is_body = choices.flag();
    up_to_a_report([&] {
        const std::string encoded =
            is_body ? encode_user_flash(sealed_user_flash(choices.rest())).text : choices.rest();
        for (const PGMDEV_USER_FLASH& flash : PGMDEV_USER_FLASH::all_from_encoded(encoded)) {
            PGMDEV_USER_FLASH::encode({&flash.record(), 1});
        }
        cfg_set_value(PGMDEV_USER_FLASH::CONFIGURATION_KEY, encoded);
        LOADER().parse_ext_flash_info();
    });
    return 0;
}

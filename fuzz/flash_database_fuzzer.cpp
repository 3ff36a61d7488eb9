#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <vector>

#include "msg.h"
#include "pgmdev_flash_manager.h"

// Any bytes as the payload of a flash database: loading ends in a report, or in records that can be listed.

namespace {

class LOADER : public PGMDEV_FLASH_MANAGER {
public:
    LOADER() : PGMDEV_FLASH_MANAGER(false, 0, true, false) {}

    /// Packs the payload as a file and loads it through the bounded reader.
    void load(const std::uint8_t* payload, std::size_t size) {
        std::vector<BYTE> image(HEAD, 0);
        const char head[] = "PGMIO_FMe58bc25311bf5303874d34bcafcaa4c1";
        std::copy_n(head, HEAD - 4, image.begin());
        for (int i = 0; i < 4; ++i) {
            image[HEAD - 4 + static_cast<std::size_t>(i)] = static_cast<BYTE>(size >> 8 * i);
        }
        image.insert(image.end(), payload, payload + size);
        DWORD length = 0;
        BYTE* packed = compress_data(image.data(), HEAD, static_cast<DWORD>(image.size()), length);
        std::vector<BYTE> file(packed, packed + length);
        delete[] packed;
        file.resize(file.size() + 2);
        FIO_REPLACEMENT scratch((std::filesystem::temp_directory_path() / "pgmdev-fuzz.pcf").string());
        if (scratch.write(file)) {
            initialize_flash_database(scratch.temporary());
        }
    }

private:
    static constexpr std::size_t HEAD = 44;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const bool quiet = [] {
        MSG_INTERNAL_ERROR::set_handler(
            [](const MSG_INTERNAL_ERROR_REPORT& report) { throw MSG_INTERNAL_ERROR_EXCEPTION(report); });
        return true;
    }();
    if (quiet && size > 0) {
        try {
            LOADER().load(data, size);
        } catch (const MSG_INTERNAL_ERROR_EXCEPTION&) {
            // a report is the right answer to damage
        }
    }
    return 0;
}

#include "hps/block_form.h"

#include <fmt/core.h>

#include <algorithm>
#include <array>
#include <tuple>

#include "files/container.h"
#include "files/origins.h"
#include "hps/flash.h"
#include "terminal/failure.h"

namespace {

template <class FLASH>
std::string list_fault(std::span<const BYTE> bytes) {
    if (bytes.size() <= FLASH::STAMP.size() || !std::equal(FLASH::STAMP.begin(), FLASH::STAMP.end(), bytes.begin())) {
        return fmt::format("it does not begin with the stamp {} and a record", FLASH::STAMP);
    }
    constexpr std::size_t COUNT = std::tuple_size_v<std::remove_cvref_t<decltype(FLASH::MEMBERS)>>;
    std::array<PGMDEV_PARAM_TYPE, COUNT> types{};
    std::transform(FLASH::MEMBERS.begin(), FLASH::MEMBERS.end(), types.begin(),
                   [](const auto& member) { return member.type(); });
    typename FLASH::RECORD record;
    auto position = static_cast<DWORD>(FLASH::STAMP.size());
    const auto size = static_cast<DWORD>(bytes.size());
    for (std::size_t i = 0; position < size; ++i) {
        const DWORD begin = position;
        const bool whole =
            PGMDEV_FLASH_INI::assign_flash_ini_data(bytes.data(), position, size, COUNT, types.data(), record.values);
        if (!whole || position > size) {
            return fmt::format("record {}, which begins at byte {}, is cut", i, begin);
        }
    }
    return "";
}

}  // namespace

std::string_view block_stamp(PGMDEV_FLASH_INI_ENUM which) {
    switch (which) {
        case HPS_SPI::BLOCK:
            return HPS_SPI::STAMP;
        case HPS_NAND::BLOCK:
            return HPS_NAND::STAMP;
        default:
            return "";
    }
}

std::string block_fault(PGMDEV_FLASH_INI_ENUM which, std::span<const BYTE> bytes) {
    switch (which) {
        case HPS_SPI::BLOCK:
            return list_fault<HPS_SPI>(bytes);
        case HPS_NAND::BLOCK:
            return list_fault<HPS_NAND>(bytes);
        default:
            return "";
    }
}

void warn_of_list(PGMDEV_FLASH_INI_ENUM which, bool is_empty) {
    DWORD size = 0;
    const std::unique_ptr<BYTE[]> block(PGMDEV_FLASH_INI::read_flash_ini_data(which, size));
    const std::string fault = block == nullptr ? "" : block_fault(which, {block.get(), size});
    if (!fault.empty()) {
        const PLACE place = container_place();
        warn_of({FAILURE_CODE::BLOCK_OF_ANOTHER_VERSION,
                 fmt::format("the block \"{}\" holds more than this version reads: {}", PGMDEV_FLASH_INI_NAMES[which],
                             fault),
                 place.path,
                 place.tried,
                 fmt::format("see params read {0}; to give it up: params remove {0}", static_cast<DWORD>(which)),
                 {}});
    } else if (is_empty && is_unread_block(which)) {
        warn_of(unread_block(std::string(PGMDEV_FLASH_INI_NAMES[which])));
    }
}

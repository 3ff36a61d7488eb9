#include "support/responses.h"

#include <algorithm>
#include <optional>
#include <random>

#include "gen.h"

PGMDEV_FLASH_MANAGER& flash_1000() {
    static std::optional<PGMDEV_FLASH_MANAGER> manager;
    if (!manager) {
        gen_set_device_db_fullpath(BENCHMARK_FLASH_1000_DIR);
        manager.emplace(false, 1, false, false);
    }
    return *manager;
}

const std::vector<RESPONSE>& responses() {
    static const std::vector<RESPONSE> RESPONSES = [] {
        std::vector<RESPONSE> all;
        for (DWORD i = 0; i < flash_1000().get_flash_count(); ++i) {
            const PGMDEV_SFL_FLASH_INFO& record = flash_1000().get_flash_database()[i];
            if (!record.silicon_id && record.memory_type_index != PGMDEV_SFL_FLASH_INFO::NONE) {
                RESPONSE& response = all.emplace_back();
                response[record.memory_id_index] = record.memory_id;
                response[record.memory_type_index] = record.memory_type;
                response[record.mfc_id_index] = record.mfc_id;
            }
        }
        // NOLINTNEXTLINE(cert-msc32-c,cert-msc51-cpp): the same every run
        std::shuffle(all.begin(), all.end(), std::mt19937(1));
        return all;
    }();
    return RESPONSES;
}

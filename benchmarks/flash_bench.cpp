#include <benchmark/benchmark.h>
#include <zlib.h>

#include <fstream>
#include <iterator>
#include <vector>

#include "gen.h"
#include "pgmdev_flash_manager.h"

// Loading and identifying, each beside a bare limit in the same run.

namespace {

std::vector<char> database() {
    std::ifstream file(DEVICES_DIR "/programmer/pgm_flash.pcf", std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

/// The limit for loading: read the file and inflate it.
void ReadAndInflate(benchmark::State& state) {
    for ([[maybe_unused]] auto _ : state) {
        const std::vector<char> file = database();
        std::vector<Bytef> body(1 << 17);
        uLongf length = body.size();
        uncompress(body.data(), &length, reinterpret_cast<const Bytef*>(file.data() + 44), file.size() - 46);
        benchmark::DoNotOptimize(body.data());
    }
}
BENCHMARK(ReadAndInflate);

void Load(benchmark::State& state) {
    gen_set_device_db_fullpath(DEVICES_DIR);
    for ([[maybe_unused]] auto _ : state) {
        PGMDEV_FLASH_MANAGER manager(false, 1, false, false);
        benchmark::DoNotOptimize(manager.get_flash_database());
    }
}
BENCHMARK(Load);

/// The limit for identifying: walk an array of nothing but the compared bytes.
void WalkBareArray(benchmark::State& state) {
    gen_set_device_db_fullpath(DEVICES_DIR);
    PGMDEV_FLASH_MANAGER manager(false, 1, false, false);
    struct KEY {
        bool silicon;
        BYTE id, id_index, type, type_index, mfc, mfc_index;
    };
    std::vector<KEY> keys;
    for (DWORD i = 0; i < manager.get_flash_count(); ++i) {
        const auto& r = manager.get_flash_database()[i];
        keys.push_back({r.silicon_id, r.memory_id, r.memory_id_index, r.memory_type, r.memory_type_index, r.mfc_id,
                        r.mfc_id_index});
    }
    BYTE response[256] = {0x0B, 0x60, 0x17};
    for ([[maybe_unused]] auto _ : state) {
        benchmark::DoNotOptimize(response);
        std::size_t found = 0;
        for (const KEY& k : keys) {
            if (!k.silicon && response[k.id_index] == k.id &&
                (k.type_index == 255 || response[k.type_index] == k.type) && response[k.mfc_index] == k.mfc) {
                break;
            }
            ++found;
        }
        benchmark::DoNotOptimize(found);
    }
}
BENCHMARK(WalkBareArray);

void Identify(benchmark::State& state) {
    gen_set_device_db_fullpath(DEVICES_DIR);
    PGMDEV_FLASH_MANAGER manager(false, 1, false, false);
    BYTE response[256] = {0x0B, 0x60, 0x17};
    for ([[maybe_unused]] auto _ : state) {
        benchmark::DoNotOptimize(manager.flash_id_database_mapping(false, 0, response));
    }
}
BENCHMARK(Identify);

}  // namespace

#include <benchmark/benchmark.h>

#include "gen.h"
#include "peers/records.h"
#include "pgmdev_flash_manager.h"
#include "support/databases.h"

// Loading a flash database of 1,000 rows, beside its limit and what else one could take.

namespace {

using FLASH_RECORDS = std::vector<PGMDEV_SFL_FLASH_INFO>;

void LoadFlash(benchmark::State& state) {
    gen_set_device_db_fullpath(BENCHMARK_FLASH_1000_DIR);
    for ([[maybe_unused]] auto _ : state) {
        PGMDEV_FLASH_MANAGER manager(false, 1, false, false);
        benchmark::DoNotOptimize(manager.get_flash_database());
    }
}
BENCHMARK(LoadFlash)->Unit(benchmark::kMicrosecond);

template <INFLATER INFLATER_USED>
void ReadAndInflateFlash(benchmark::State& state) {
    for ([[maybe_unused]] auto _ : state) {
        benchmark::DoNotOptimize(read_and_inflate<INFLATER_USED>(BENCHMARK_FLASH_1000_DIR "/programmer/pgm_flash.pcf"));
    }
}
BENCHMARK(ReadAndInflateFlash<INFLATER::ZLIB>)->Unit(benchmark::kMicrosecond);
BENCHMARK(ReadAndInflateFlash<INFLATER::LIBDEFLATE>)->Unit(benchmark::kMicrosecond);

FLASH_RECORDS flash_records() {
    gen_set_device_db_fullpath(BENCHMARK_FLASH_1000_DIR);
    PGMDEV_FLASH_MANAGER manager(false, 1, false, false);
    const PGMDEV_SFL_FLASH_INFO* first = manager.get_flash_database();
    return {first, first + manager.get_flash_count()};
}

template <template <class, const auto&> class FILE>
void LoadFlashFromFile(benchmark::State& state) {
    using RECORDS = FILE<PGMDEV_SFL_FLASH_INFO, PGMDEV_SFL_FLASH_MEMBERS>;
    const std::string path = new_scratch_file(std::string("flash") + RECORDS::ENDING);
    const FLASH_RECORDS records = flash_records();
    RECORDS::write(path, records);
    if (RECORDS::load(path) != records) {
        state.SkipWithError("not what was written");
    }
    for ([[maybe_unused]] auto _ : state) {
        benchmark::DoNotOptimize(RECORDS::load(path));
    }
}
BENCHMARK(LoadFlashFromFile<SQLITE_RECORDS>)->Unit(benchmark::kMicrosecond);
BENCHMARK(LoadFlashFromFile<JSON_RECORDS>)->Unit(benchmark::kMicrosecond);
BENCHMARK(LoadFlashFromFile<TEXT_RECORDS>)->Unit(benchmark::kMicrosecond);

}  // namespace

#include <benchmark/benchmark.h>

#include <memory>

#include "dstr.h"
#include "gen.h"
#include "peers/records.h"
#include "pgmdev_dev_info_manager.h"
#include "support/databases.h"

// Loading the profile database, beside its limit and what else one could take.

namespace {

using PROFILES = std::vector<PGMDEV_DEVICE_INFO>;

void LoadProfiles(benchmark::State& state) {
    gen_set_device_db_fullpath(BENCHMARK_DEVICES_DIR);
    for ([[maybe_unused]] auto _ : state) {
        PGMDEV_DEV_INFO_MANAGER manager;
        benchmark::DoNotOptimize(manager.get_device_database());
    }
}
BENCHMARK(LoadProfiles)->Unit(benchmark::kMicrosecond);

template <INFLATER INFLATER_USED>
void ReadAndInflateProfiles(benchmark::State& state) {
    for ([[maybe_unused]] auto _ : state) {
        benchmark::DoNotOptimize(read_and_inflate<INFLATER_USED>(BENCHMARK_DEVICES_DIR "/programmer/pgm_dev_info.pcf"));
    }
}
BENCHMARK(ReadAndInflateProfiles<INFLATER::ZLIB>)->Unit(benchmark::kMicrosecond);
BENCHMARK(ReadAndInflateProfiles<INFLATER::LIBDEFLATE>)->Unit(benchmark::kMicrosecond);

PROFILES profiles() {
    gen_set_device_db_fullpath(BENCHMARK_DEVICES_DIR);
    PGMDEV_DEV_INFO_MANAGER manager;
    const PGMDEV_DEVICE_INFO* first = manager.get_device_database();
    return {first, first + PGMDEV_DEV_INFO_MANAGER::TOTAL_DATABASE_DEVICE};
}

/// The records only: who governs a part would have to be worked out from them.
template <template <class, const auto&> class FILE>
void LoadProfilesFromFile(benchmark::State& state) {
    using RECORDS = FILE<PGMDEV_DEVICE_INFO, PGMDEV_DEVICE_INFO_MEMBERS>;
    const std::string path = new_scratch_file(std::string("profiles") + RECORDS::ENDING);
    const PROFILES records = profiles();
    RECORDS::write(path, records);
    if (RECORDS::load(path) != records) {
        state.SkipWithError("not what was written");
    }
    for ([[maybe_unused]] auto _ : state) {
        benchmark::DoNotOptimize(RECORDS::load(path));
    }
}
BENCHMARK(LoadProfilesFromFile<SQLITE_RECORDS>)->Unit(benchmark::kMicrosecond);
BENCHMARK(LoadProfilesFromFile<JSON_RECORDS>)->Unit(benchmark::kMicrosecond);
BENCHMARK(LoadProfilesFromFile<TEXT_RECORDS>)->Unit(benchmark::kMicrosecond);

/// The profile that governs a part.
void GetProfileByPart(benchmark::State& state) {
    gen_set_device_db_fullpath(BENCHMARK_DEVICES_DIR);
    PGMDEV_DEV_INFO_MANAGER manager;
    int part = DEV_PART_INVALID;
    for ([[maybe_unused]] auto _ : state) {
        part = part + 1 < DEV_PART_GENERIC ? part + 1 : DEV_PART_INVALID + 1;
        const std::unique_ptr<PGMDEV_DEVICE_INFO> profile(manager.get_db_by_part(part));
        benchmark::DoNotOptimize(profile.get());
    }
}
BENCHMARK(GetProfileByPart);

void CopyProfile(benchmark::State& state) {
    const PROFILES records = profiles();
    std::size_t next = 0;
    for ([[maybe_unused]] auto _ : state) {
        next = next + 1 < records.size() ? next + 1 : 0;
        benchmark::DoNotOptimize(std::make_unique<PGMDEV_DEVICE_INFO>(records[next]).get());
    }
}
BENCHMARK(CopyProfile);

}  // namespace

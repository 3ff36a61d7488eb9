#include <benchmark/benchmark.h>

#include <memory>

#include "dstr.h"
#include "gen.h"
#include "pgmdev_dev_info_manager.h"
#include "pgmdev_device_grammar_mgr.h"
#include "pgmdev_flash_candidates.h"
#include "pgmdev_mgr.h"
#include "pgmdev_part_index.h"
#include "support/names.h"
#include "support/responses.h"

// Requests by several threads of one process to the same stores, as a program sees the library.

namespace {

constexpr int MOST_THREADS = 8;
constexpr DWORD TELLING_BYTES = 5;

/// Everything about a name.
void NameRequests(benchmark::State& state) {
    ask_for_names(state, [](std::string& name) {
        std::string part_pcf;
        std::string family_pcf;
        PGMDEV_DEVICE_GRAMMAR_MGR::get_pgm_pcfs(name, part_pcf, family_pcf);
        std::string package_name = PGMDEV_DEVICE_GRAMMAR_MGR::get_package_name(name, false);
        std::string programming_name = PGMDEV_DEVICE_GRAMMAR_MGR::get_pgm_name(name, false, false);
        return package_name.size() + programming_name.size() + part_pcf.size() + family_pcf.size();
    });
}
BENCHMARK(NameRequests)->ThreadRange(1, MOST_THREADS)->UseRealTime();

/// A part by a less specific name, its ordering code, and its hash there and back.
void PartRequests(benchmark::State& state) {
    const PGMDEV_PART_INDEX index;
    ask_for(state, typed_package_names(), [&index](std::string& name) {
        const std::string part = index.get_possible_full_name(name.substr(1));
        return PGMDEV_MGR::get_opn_enum(part) ^ PGMDEV_MGR::get_opn_from_hash(PGMDEV_MGR::get_opn_hash(part)).size();
    });
}
BENCHMARK(PartRequests)->ThreadRange(1, MOST_THREADS)->UseRealTime();

/// The flash that answered, out of 1,000, by an index that all threads share.
void FlashRequests(benchmark::State& state) {
    static const PGMDEV_FLASH_INDEX INDEX(flash_1000().get_flash_database(), flash_1000().get_flash_count());
    static const std::vector<RESPONSE>& RESPONSES = responses();
    std::size_t next = 0;
    for ([[maybe_unused]] auto _ : state) {
        next = next + 1 < RESPONSES.size() ? next + 1 : 0;
        benchmark::DoNotOptimize(INDEX.taken(false, RESPONSES[next].data(), TELLING_BYTES));
    }
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(FlashRequests)->ThreadRange(1, MOST_THREADS)->UseRealTime();

/// The profile of a part. A manager is used by one thread at a time, so each thread has a copy, which shares its records.
void ProfileRequests(benchmark::State& state) {
    static const PGMDEV_DEV_INFO_MANAGER SHARED = [] {
        gen_set_device_db_fullpath(BENCHMARK_DEVICES_DIR);
        return PGMDEV_DEV_INFO_MANAGER();
    }();
    PGMDEV_DEV_INFO_MANAGER manager(SHARED);
    int part = DEV_PART_INVALID;
    for ([[maybe_unused]] auto _ : state) {
        part = part + 1 < DEV_PART_GENERIC ? part + 1 : DEV_PART_INVALID + 1;
        const std::unique_ptr<PGMDEV_DEVICE_INFO> profile(manager.get_db_by_part(part));
        benchmark::DoNotOptimize(profile.get());
    }
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(ProfileRequests)->ThreadRange(1, MOST_THREADS)->UseRealTime();

}  // namespace

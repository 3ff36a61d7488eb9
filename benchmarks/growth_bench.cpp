#include <benchmark/benchmark.h>

#include "names/clean_up.h"
#include "names/part_indexes.h"
#include "names/stores.h"
#include "peers/hash_map.h"
#include "pgmdev_device_grammar_mgr.h"
#include "pgmdev_mgr.h"
#include "pgmdev_part_index.h"
#include "support/names.h"

// What becomes of the compiled-in data and the questions to it with the number of names. This program is linked with catalogs
// of several sizes.

namespace {

void FirstUseOfGrammar(benchmark::State& state) {
    for ([[maybe_unused]] auto _ : state) {
        free_stores_and_indexes();
        benchmark::DoNotOptimize(get_grammar_store());
    }
}
BENCHMARK(FirstUseOfGrammar);

void FirstUseOfOrderingCodes(benchmark::State& state) {
    for ([[maybe_unused]] auto _ : state) {
        free_stores_and_indexes();
        benchmark::DoNotOptimize(get_opn_store());
    }
}
BENCHMARK(FirstUseOfOrderingCodes);

/// What questions for parts rest on once they are many.
void MakePartIndexes(benchmark::State& state) {
    get_grammar_store();
    for ([[maybe_unused]] auto _ : state) {
        free_part_indexes();
        const PGMDEV_PART_INDEX index;
        benchmark::DoNotOptimize(parts_by_hash(INDEX_WANTED::NOW));
    }
}
BENCHMARK(MakePartIndexes);

void GetPackageName(benchmark::State& state) {
    ask_for_names(state, [](std::string& query) { return PGMDEV_DEVICE_GRAMMAR_MGR::get_package_name(query, false); });
}
BENCHMARK(GetPackageName);

/// The same by a bare hash map: names beyond what the caches of a processor hold slow everybody down.
void FindInHashMap(benchmark::State& state) {
    static const HASH_MAP NAMES(package_names());
    ask_for_names(state, [](std::string& query) {
        normalize_name(query);
        return NAMES.find(query);
    });
}
BENCHMARK(FindInHashMap);

void GetOpnFromHash(benchmark::State& state) {
    parts_by_hash(INDEX_WANTED::NOW);
    ask_for_names(state, [](std::string& query) {
        return PGMDEV_MGR::get_opn_from_hash(PGMDEV_MGR::get_opn_hash(query.substr(1)));
    });
}
BENCHMARK(GetOpnFromHash);

void GetPossibleFullName(benchmark::State& state) {
    const PGMDEV_PART_INDEX index;
    ask_for(state, typed_package_names(),
            [&index](std::string& query) { return index.get_possible_full_name(query.substr(1)); });
}
BENCHMARK(GetPossibleFullName);

}  // namespace

#pragma once

/// \file
/// The names that benchmarks ask for.

#include <benchmark/benchmark.h>

#include <string>
#include <utility>
#include <vector>

/// Names, each with the name that stands for it.
using NAME_PAIRS = std::vector<std::pair<std::string, std::string>>;

/// The full name of every part that the grammar knows, in capitals, and its package name.
const NAME_PAIRS& package_names();

/// Every entry of every table of the grammar and its key, each behind the number of its table.
const NAME_PAIRS& grammar_pairs();

/// The full names in no order, as a user may have typed them.
const std::vector<std::string>& typed_names();

/// Asks for one name after another. `find` may change the name.
template <class FIND>
void ask_for_names(benchmark::State& state, FIND find) {
    const std::vector<std::string>& names = typed_names();
    std::size_t next =
        static_cast<std::size_t>(state.thread_index()) * names.size() / static_cast<std::size_t>(state.threads());
    std::string query;
    for ([[maybe_unused]] auto _ : state) {
        query = names[next];
        next = next + 1 < names.size() ? next + 1 : 0;
        benchmark::DoNotOptimize(find(query));
    }
    state.SetItemsProcessed(state.iterations());
}

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

// Names in no order, as users may have typed them: in lower case, behind a blank.

/// The full names.
const std::vector<std::string>& typed_names();

/// Of each of them the package name.
const std::vector<std::string>& typed_package_names();

/// Every programmer-file name of a part.
const std::vector<std::string>& typed_programmer_file_names();

/// Asks for one name after another. `find` may change the name.
template <class FIND>
void ask_for(benchmark::State& state, const std::vector<std::string>& names, FIND find) {
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

template <class FIND>
void ask_for_names(benchmark::State& state, FIND find) {
    ask_for(state, typed_names(), find);
}
